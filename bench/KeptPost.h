// The peer of a whole call: the least that a caller of the system's HTTP library does for one post again and again,
// with what that library lets it keep, and the reply in memory.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace kzn::bench {

class KeptPost {
public:
    KeptPost(const std::string& url, std::string_view body);
    KeptPost(const KeptPost&) = delete;
    KeptPost& operator=(const KeptPost&) = delete;
    ~KeptPost();

    /// The reply; empty where there is none.
    const std::string& post();

    /// What is kept, for the row's name.
    static const char* const kName;

private:
    struct Kept;
    std::unique_ptr<Kept> kept_;
    std::string reply_;
};

/// How many connections the library opens for so many calls: one, unless the system cannot be asked whether a kept one
/// is clean.
std::size_t connectionsFor(std::size_t calls);

}  // namespace kzn::bench
