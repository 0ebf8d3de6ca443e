// The owner of a file descriptor.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <utility>

namespace kzn::pvutil {

class Descriptor {
public:
    explicit Descriptor(int number = -1) noexcept : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(number_, other.number_);
        return *this;
    }

    ~Descriptor()
    {
        if (number_ >= 0) close(number_);
    }

    int get() const noexcept { return number_; }
    int release() noexcept { return std::exchange(number_, -1); }
    explicit operator bool() const noexcept { return number_ >= 0; }

private:
    int number_;
};

// The first three belong to the program, also while it has closed them: what it prints then must not go into a file or
// a connection of the library's.
inline Descriptor aboveStandard(Descriptor file) noexcept
{
    if (!file || file.get() > STDERR_FILENO) return file;
    return Descriptor(fcntl(file.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

}  // namespace kzn::pvutil
