#pragma once

#include <string>
#include <vector>

namespace service::tape {

// The file of a tape. Whoever opens it finds a whole tape, at any moment: it is written beside itself, and takes its
// own place.
class TapeFile {
public:
    explicit TapeFile(std::string path) : path_(std::move(path)) {}

    // Throw std::runtime_error. What stands in the file are the texts, one behind the other.
    void write(const std::vector<std::string>& texts) const;
    std::string read() const;

private:
    std::string path_;
};

}  // namespace service::tape
