#include "service/remote/Files.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>

#include "service/base/Secret.h"

namespace service::remote {

std::string readFile(const std::string& path)
{
    const auto all = [](std::istream& stream) {
        return std::string{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    };
    if (path == "-") return all(std::cin);
    std::ifstream file(path, std::ios::binary);
    std::string text = all(file);
    if (!file) throw std::runtime_error("the file " + path + " cannot be read");
    return text;
}

void writeFile(const std::string& path, const std::string& text)
{
    const std::string fresh = newID(path + ".new");
    std::error_code error;
    {
        std::ofstream file(fresh, std::ios::binary);
        std::filesystem::permissions(fresh, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write,
                                     error);
        file << text << std::flush;
        if (!file) error = std::make_error_code(std::errc::io_error);
    }
    if (!error) std::filesystem::rename(fresh, path, error);
    if (!error) return;
    std::error_code ignored;
    std::filesystem::remove(fresh, ignored);
    throw std::runtime_error("the file " + path + " cannot be written");
}

}  // namespace service::remote
