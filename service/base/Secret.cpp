#include "service/base/Secret.h"

#include <sodium.h>

#include <array>
#include <new>
#include <stdexcept>

namespace service {

namespace {

// What a hash costs: a few milliseconds, slow to guess, yet a test can sign in a hundred times.
constexpr unsigned long long kHashPasses = 2;
constexpr std::size_t kHashMemory = std::size_t{2} * 1024 * 1024;

void prepare()
{
    static const int result = sodium_init();
    if (result < 0) throw std::runtime_error("no random numbers");
}

template <std::size_t Size>
std::string randomHex()
{
    prepare();
    std::array<unsigned char, Size> noise{};
    randombytes_buf(noise.data(), noise.size());
    std::string text(2 * Size + 1, '\0');
    sodium_bin2hex(text.data(), text.size(), noise.data(), noise.size());
    text.pop_back();
    return text;
}

}  // namespace

std::string newCredential()
{
    return randomHex<20>();
}

std::string newID(std::string_view prefix)
{
    return std::string(prefix) + '-' + randomHex<8>();
}

std::uint32_t randomNumber()
{
    prepare();
    return randombytes_random();
}

std::string hashSecret(const std::string& secret)
{
    prepare();
    std::array<char, crypto_pwhash_STRBYTES> hash{};
    if (crypto_pwhash_str_alg(hash.data(), secret.data(), secret.size(), kHashPasses, kHashMemory,
                              crypto_pwhash_ALG_ARGON2ID13) != 0) {
        throw std::bad_alloc();
    }
    return hash.data();
}

bool secretMatches(const std::string& secret, const std::string& hash)
{
    prepare();
    if (hash.empty()) {
        hashSecret(secret);
        return false;
    }
    return crypto_pwhash_str_verify(hash.c_str(), secret.data(), secret.size()) == 0;
}

}  // namespace service
