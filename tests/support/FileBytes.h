// What stands in a file.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

inline std::string bytesOf(const std::filesystem::path& file)
{
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}
