#pragma once

#include <string>

namespace service::store {

// A data file that was made for a service that then cannot start goes again. It stands before the database that it
// looks after, so that it goes after it.
class NewFile {
public:
    explicit NewFile(std::string path);
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    // The database is open, and so nobody else's: only from now on the file may go.
    void opened() { ours_ = !existed_; }

    // The service has started.
    void keep() { ours_ = false; }

private:
    std::string path_;
    bool existed_;
    bool ours_ = false;
};

}  // namespace service::store
