#include "tests/support/LogLines.h"

#include <fstream>
#include <iterator>

LogLines::LogLines(std::filesystem::path file) : file_(std::move(file)), start_(exists(file_) ? file_size(file_) : 0) {}

std::string LogLines::bytesSinceMade() const
{
    std::ifstream stream(file_, std::ios::binary);
    stream.seekg(static_cast<std::streamoff>(start_));
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

std::vector<std::string> LogLines::sinceMade() const
{
    const std::string bytes = bytesSinceMade();
    const std::string opening = "\r\n<";
    std::vector<std::string> entries;
    for (auto at = bytes.find(opening); at != std::string::npos;) {
        const auto next = bytes.find(opening, at + opening.size());
        std::string entry = bytes.substr(at, next == std::string::npos ? next : next - at);
        if (entry.ends_with('\n')) entry.pop_back();
        if (entry.ends_with('\r')) entry.pop_back();
        const auto text = entry.find("> ");
        entries.push_back(text == std::string::npos ? entry : entry.substr(text + 2));
        at = next;
    }
    return entries;
}
