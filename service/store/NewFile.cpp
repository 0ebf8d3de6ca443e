#include "service/store/NewFile.h"

#include <filesystem>
#include <utility>

#include "service/store/Database.h"

namespace service::store {

NewFile::NewFile(std::string path) : path_(std::move(path))
{
    std::error_code ignored;
    existed_ = path_ == kInMemory || std::filesystem::exists(std::filesystem::u8path(path_), ignored);
}

NewFile::~NewFile()
{
    if (!ours_) return;
    std::error_code ignored;
    for (const char* const tail : {"-wal", "-shm", "-journal", ""})
        std::filesystem::remove(std::filesystem::u8path(path_ + tail), ignored);
}

}  // namespace service::store
