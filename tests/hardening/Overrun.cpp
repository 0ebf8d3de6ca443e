// Writes as many bytes into sixteen as its first argument has letters: with "copy" behind it by a function of the C
// library, and else one by one.
#include <array>
#include <cstdio>
#include <cstring>
#include <string_view>

namespace {

std::array<volatile char, 16> g_seen;

void keep(const char* bytes)
{
    for (std::size_t at = 0; at < g_seen.size(); ++at) g_seen[at] = bytes[at];
}

[[gnu::noinline]] void byCopy(const char* text, std::size_t size)
{
    char bytes[16];
    std::memcpy(bytes, text, size);
    keep(bytes);
}

[[gnu::noinline]] void oneByOne(const char* text, std::size_t size)
{
    char bytes[16] = {};
    volatile char* to = bytes;
    for (std::size_t at = 0; at < size; ++at) to[at] = text[at];
    keep(bytes);
}

}  // namespace

int main(int count, char** words)
{
    if (count < 2) return 2;
    const std::string_view text = words[1];
    if (count > 2) byCopy(text.data(), text.size());
    else oneByOne(text.data(), text.size());
    std::puts("went on");
    return 0;
}
