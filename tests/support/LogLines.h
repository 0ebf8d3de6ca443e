// The entries that were written to the log file since one of these was made.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

class LogLines {
public:
    explicit LogLines(std::filesystem::path file);

    /// Without line break, time, process and thread: "Debug:  cmd=get".
    std::vector<std::string> sinceMade() const;

    /// The same bytes as they stand in the file.
    std::string bytesSinceMade() const;

private:
    std::filesystem::path file_;
    std::uintmax_t start_;
};
