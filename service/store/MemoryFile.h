#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>
#include <mutex>
#include <shared_mutex>
#include <utility>
#include <vector>

namespace service::store {

// What a file in memory holds. It grows without moving.
class MemoryContent {
public:
    // How many of the bytes are there; the rest is zeroed.
    std::size_t read(char* out, std::size_t count, std::size_t at) const;
    void write(const char* bytes, std::size_t count, std::size_t at);
    void truncate(std::size_t size);

    // Where so many bytes stand, which they do as long as nothing is cut off; none where they are not in one piece.
    char* find(std::size_t count, std::size_t at);
    std::size_t size() const;

private:
    static constexpr std::size_t kBlock = std::size_t{64} * 1024;
    using Block = std::array<char, kBlock>;

    void resize(std::size_t size);

    mutable std::shared_mutex mutex_;
    std::vector<std::unique_ptr<Block>> blocks_;
    std::size_t size_ = 0;
};

// A file that several connections have open: its locks are those of SQLite's database file, and the index is the memory
// that they share, with locks of its parts.
struct MemoryFile {
    static constexpr std::size_t kParts = 8;

    MemoryContent content;

    std::mutex mutex;  // of the locks
    int readers = 0;
    bool reserved = false;
    bool pending = false;
    bool exclusive = false;

    std::mutex indexMutex;  // of what follows
    std::vector<std::vector<char>> regions;
    std::array<int, kParts> sharers{};
    unsigned taken = 0;  // bits of the parts that one has for itself
    std::atomic<unsigned> meetings = 0;
};

// One connection's use of a file.
class MemoryUse {
public:
    explicit MemoryUse(std::shared_ptr<MemoryFile> file) : file_(std::move(file)) {}

    MemoryContent& content() { return file_->content; }

    // The levels are SQLite's; false where others are in the way.
    bool lock(int level);
    void unlock(int level);
    bool isReserved();

    // A piece of the index; none where there is none and it is not to be made.
    char* region(std::size_t number, std::size_t size, bool make);

    // Parts are bits. False where others are in the way.
    bool shareParts(unsigned parts);
    bool takeParts(unsigned parts);
    void unlockParts(unsigned parts);

    // What one has written before, the other sees behind.
    void meet();

private:
    bool lockShared();
    bool lockForWriting(int level);

    std::shared_ptr<MemoryFile> file_;
    int level_ = 0;
    unsigned shared_ = 0;  // bits of the parts of the index that it has with others
    unsigned taken_ = 0;   // and for itself
};

}  // namespace service::store
