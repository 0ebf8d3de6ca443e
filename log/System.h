// What the operating systems do differently. All text is UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace logreader::system {

/// The arguments behind the program's name.
std::vector<std::string> arguments(int argc, const char* const* argv);

/// Lets the two output streams carry bytes as they are, and a console show them as UTF-8.
void prepareOutput();

/// How wide the terminal is that standard output goes to, 0 where it is none.
std::size_t outputColumns();

/// Where the library keeps its log: for a user without a folder for application data, in the current one.
std::string libraryLog();

enum class Change { none, replaced, cut };

/// Which file it is, and when it was last written.
struct Mark {
    std::uint64_t volume = 0;
    std::uint64_t number = 0;
    std::int64_t written = 0;  ///< in a unit of the system's own

    bool isSameFile(const Mark& other) const { return volume == other.volume && number == other.number; }
};

/// A file that others go on writing, may rename and begin anew, or standard input.
class Input {
public:
    /// Opens the file, or standard input for "-". Throws Problem where that fails.
    explicit Input(std::string path);
    Input(const Input&) = delete;
    Input& operator=(const Input&) = delete;
    ~Input();

    /// How many bytes there were; none at the present end. Throws Problem.
    std::size_t read(std::span<char> bytes);

    /// Whether the path has come to name another file, or the file is shorter than what was read.
    Change change() const;

    /// Throws Problem.
    Mark mark() const;

    bool isFile() const { return path_ != "-"; }

private:
    std::string path_;
    std::intptr_t handle_;
    std::uint64_t position_ = 0;
};

}  // namespace logreader::system
