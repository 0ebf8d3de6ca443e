#pragma once

#include <string>

namespace service::remote {

// "-" is standard input. Both throw std::runtime_error where the file cannot be had.
std::string readFile(const std::string& path);

// The file is there whole, or as it was before; nobody but its owner reads it.
void writeFile(const std::string& path, const std::string& text);

}  // namespace service::remote
