#include "service/tape/TapeFile.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace service::tape {

void TapeFile::write(const std::vector<std::string>& texts) const
{
    const auto beside = std::filesystem::u8path(path_ + ".new");
    std::ofstream file(beside, std::ios::binary | std::ios::trunc);
    for (const std::string& text : texts) file << text;
    file.close();
    std::error_code error;
    if (file) std::filesystem::rename(beside, std::filesystem::u8path(path_), error);
    if (!file || error) throw std::runtime_error("the tape " + path_ + " cannot be written");
}

std::string TapeFile::read() const
{
    std::ifstream file(std::filesystem::u8path(path_), std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(file), {}};
    if (!file) throw std::runtime_error("the tape " + path_ + " cannot be read");
    return text;
}

}  // namespace service::tape
