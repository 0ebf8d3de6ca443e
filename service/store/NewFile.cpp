#include "service/store/NewFile.h"

#include <filesystem>
#include <utility>

#include "service/store/Database.h"

namespace service::store {

namespace {

// What is made is what a link leads to; the link was there before.
std::string behindLink(const std::string& path)
{
    std::error_code none;
    const std::filesystem::path link = std::filesystem::u8path(path);
    const std::filesystem::path target = std::filesystem::read_symlink(link, none);
    const std::u8string made = (link.parent_path() / target).u8string();
    return none ? path : std::string(made.begin(), made.end());
}

}  // namespace

NewFile::NewFile(std::string path) : path_(std::move(path))
{
    std::error_code ignored;
    existed_ = path_ == kInMemory || std::filesystem::exists(std::filesystem::u8path(path_), ignored);
    if (!existed_) path_ = behindLink(path_);
}

NewFile::~NewFile()
{
    if (!ours_) return;
    std::error_code ignored;
    for (const char* const tail : {"-wal", "-shm", "-journal", ""})
        std::filesystem::remove(std::filesystem::u8path(path_ + tail), ignored);
}

}  // namespace service::store
