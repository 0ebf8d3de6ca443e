#include "service/remote/Files.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>

#include "service/base/Secret.h"
#include "service/store/PrivateFile.h"

namespace service::remote {

std::string readFile(const std::string& path)
{
    const auto all = [](std::istream& stream) {
        return std::string{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    };
    if (path == "-") return all(std::cin);
    std::ifstream file(std::filesystem::u8path(path), std::ios::binary);
    std::string text = all(file);
    if (!file) throw std::runtime_error("the file " + path + " cannot be read");
    return text;
}

void writeFile(const std::string& path, const std::string& text)
{
    const std::string fresh = newID(path + ".new");
    const auto place = std::filesystem::u8path(fresh);
    std::error_code error;
    {
        std::ofstream file;
        store::openPrivately(fresh, [&] { file.open(place, std::ios::binary); });
        file << text << std::flush;
        if (!file) error = std::make_error_code(std::errc::io_error);
    }
    if (!error) std::filesystem::rename(place, std::filesystem::u8path(path), error);
    if (!error) return;
    std::error_code ignored;
    std::filesystem::remove(place, ignored);
    throw std::runtime_error("the file " + path + " cannot be written");
}

}  // namespace service::remote
