// Runs the program under test as a process of its own.
#pragma once

#include <map>
#include <string>
#include <vector>

/// How a program ended and what it wrote; all UTF-8.
struct Ended {
    int status = -1;
    std::string out;
    std::string err;
};

/// Environment variables; those that begin with PVWAPI_ and are not named are unset.
using Environment = std::map<std::string, std::string>;

/// Waits for its end. Throws std::runtime_error where it cannot be started.
Ended runProgram(const std::string& program, const std::vector<std::string>& words, const Environment& environment);

/// A file that others may read, or nobody but its owner.
void writeFile(const std::string& path, const std::string& text, bool privately);

/// Whether nobody but its owner can read the file.
bool isPrivate(const std::string& path);
