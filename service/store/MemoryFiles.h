#pragma once

#include <string>

namespace service::store {

// A database and its log in memory, which several connections of this process can have open at a time, as they have a
// file. It is gone when this is.
class MemoryFiles {
public:
    MemoryFiles();
    ~MemoryFiles();
    MemoryFiles(const MemoryFiles&) = delete;
    MemoryFiles& operator=(const MemoryFiles&) = delete;

    const std::string& name() const { return name_; }

    // How SQLite is told to look for it here.
    static const char* system();

private:
    std::string name_;
};

}  // namespace service::store
