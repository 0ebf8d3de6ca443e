#include "service/store/MemoryFile.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstring>

namespace service::store {

static_assert(MemoryFile::kParts == SQLITE_SHM_NLOCK);

std::size_t MemoryContent::read(char* out, std::size_t count, std::size_t at) const
{
    const std::shared_lock lock(mutex_);
    const std::size_t there = at < size_ ? std::min(count, size_ - at) : 0;
    for (std::size_t done = 0; done < there;) {
        const std::size_t now = std::min(there - done, kBlock - (at + done) % kBlock);
        std::memcpy(out + done, blocks_[(at + done) / kBlock]->data() + (at + done) % kBlock, now);
        done += now;
    }
    std::memset(out + there, 0, count - there);
    return there;
}

void MemoryContent::write(const char* bytes, std::size_t count, std::size_t at)
{
    const std::unique_lock lock(mutex_);
    resize(std::max(size_, at + count));
    for (std::size_t done = 0; done < count;) {
        const std::size_t now = std::min(count - done, kBlock - (at + done) % kBlock);
        std::memcpy(blocks_[(at + done) / kBlock]->data() + (at + done) % kBlock, bytes + done, now);
        done += now;
    }
}

void MemoryContent::truncate(std::size_t size)
{
    const std::unique_lock lock(mutex_);
    resize(std::min(size, size_));
}

char* MemoryContent::find(std::size_t count, std::size_t at)
{
    const std::shared_lock lock(mutex_);
    if (at + count > size_ || at % kBlock + count > kBlock) return nullptr;
    return blocks_[at / kBlock]->data() + at % kBlock;
}

std::size_t MemoryContent::size() const
{
    const std::shared_lock lock(mutex_);
    return size_;
}

// Where it shrinks, what is cut off must not come back when it grows.
void MemoryContent::resize(std::size_t size)
{
    const std::size_t blocks = (size + kBlock - 1) / kBlock;
    if (blocks < blocks_.size()) blocks_.resize(blocks);
    while (blocks_.size() < blocks) blocks_.push_back(std::make_unique<Block>());
    if (size < size_ && size % kBlock != 0) {
        std::fill(blocks_.back()->begin() + static_cast<std::ptrdiff_t>(size % kBlock), blocks_.back()->end(), '\0');
    }
    size_ = size;
}

bool MemoryUse::lock(int level)
{
    const std::scoped_lock lock(file_->mutex);
    if (level_ >= level) return true;
    return level == SQLITE_LOCK_SHARED ? lockShared() : lockForWriting(level);
}

bool MemoryUse::lockShared()
{
    if (file_->pending || file_->exclusive) return false;
    ++file_->readers;
    level_ = SQLITE_LOCK_SHARED;
    return true;
}

bool MemoryUse::lockForWriting(int level)
{
    if (level_ == SQLITE_LOCK_SHARED) {
        if (file_->reserved || file_->pending) return false;
        file_->reserved = true;
        level_ = SQLITE_LOCK_RESERVED;
    }
    if (level != SQLITE_LOCK_EXCLUSIVE) return true;
    file_->pending = true;
    level_ = SQLITE_LOCK_PENDING;
    if (file_->readers > 1) return false;
    file_->exclusive = true;
    level_ = SQLITE_LOCK_EXCLUSIVE;
    return true;
}

void MemoryUse::unlock(int level)
{
    MemoryFile& file = *file_;
    const std::scoped_lock lock(file.mutex);
    if (level_ <= level) return;
    if (level_ > SQLITE_LOCK_SHARED) file.reserved = file.pending = file.exclusive = false;
    if (level == SQLITE_LOCK_NONE) --file.readers;
    level_ = level;
}

bool MemoryUse::isReserved()
{
    const std::scoped_lock lock(file_->mutex);
    return file_->reserved;
}

char* MemoryUse::region(std::size_t number, std::size_t size, bool make)
{
    const std::scoped_lock lock(file_->indexMutex);
    auto& regions = file_->regions;
    if (number >= regions.size() && !make) return nullptr;
    while (regions.size() <= number) regions.emplace_back(size);
    return regions[number].data();
}

bool MemoryUse::shareParts(unsigned parts)
{
    const std::scoped_lock lock(file_->indexMutex);
    if ((file_->taken & ~taken_ & parts) != 0) return false;
    for (unsigned part = 0; part < MemoryFile::kParts; ++part) {
        if ((parts & ~shared_ & (1U << part)) != 0) ++file_->sharers.at(part);
    }
    shared_ |= parts;
    return true;
}

bool MemoryUse::takeParts(unsigned parts)
{
    const std::scoped_lock lock(file_->indexMutex);
    if ((file_->taken & ~taken_ & parts) != 0) return false;
    for (unsigned part = 0; part < MemoryFile::kParts; ++part) {
        const int own = (shared_ & (1U << part)) != 0 ? 1 : 0;
        if ((parts & (1U << part)) != 0 && file_->sharers.at(part) > own) return false;
    }
    file_->taken |= parts;
    taken_ |= parts;
    return true;
}

void MemoryUse::unlockParts(unsigned parts)
{
    const std::scoped_lock lock(file_->indexMutex);
    for (unsigned part = 0; part < MemoryFile::kParts; ++part) {
        if ((shared_ & parts & (1U << part)) != 0) --file_->sharers.at(part);
    }
    file_->taken &= ~(taken_ & parts);
    shared_ &= ~parts;
    taken_ &= ~parts;
}

void MemoryUse::meet()
{
    const std::scoped_lock lock(file_->indexMutex);
    ++file_->meetings;
}

}  // namespace service::store
