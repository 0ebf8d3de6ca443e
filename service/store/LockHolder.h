#pragma once

#include <memory>
#include <optional>
#include <string>

namespace service::store {

// The process that has a data file open; nothing where none is known to have it.
std::optional<long long> lockHolder(const std::string& file);

// How SQLite has to open data files here so that no other process can; none where it knows no way.
const char* exclusiveFiles();

// Lets others learn so of this process, for as long as it lives, and keeps them off the file where SQLite does not.
// Where the system keeps no room for a note, they do not learn it.
class LockNote {
public:
    LockNote();
    ~LockNote();
    LockNote(const LockNote&) = delete;
    LockNote& operator=(const LockNote&) = delete;

    // The file is there and open. Throws std::runtime_error where another process has it.
    void write(const std::string& file);

    // That was so.
    bool isRefused() const { return refused_; }

private:
    struct Note;
    std::unique_ptr<Note> note_;
    bool refused_ = false;
};

}  // namespace service::store
