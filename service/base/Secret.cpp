#include "service/base/Secret.h"

#include <crypt.h>
#include <sys/random.h>

#include <array>
#include <memory>
#include <stdexcept>

#include "service/base/Text.h"

namespace service {

namespace {

// A hash takes about ten milliseconds: slow to guess, yet a test can sign in a hundred times.
constexpr unsigned long kHashCost = 3;
constexpr const char* kHashMethod = "$y$";

std::string randomHex(std::size_t bytes)
{
    std::array<unsigned char, 32> noise{};
    if (getrandom(noise.data(), bytes, 0) != static_cast<ssize_t>(bytes)) throw std::runtime_error("no random numbers");
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    for (std::size_t i = 0; i < bytes; ++i) {
        text.push_back(kDigits[noise.at(i) >> 4U]);
        text.push_back(kDigits[noise.at(i) & 0x0FU]);
    }
    return text;
}

std::string hashWith(const std::string& secret, const std::string& setting)
{
    const auto scratch = std::make_unique<crypt_data>();
    const char* const hash = crypt_r(secret.c_str(), setting.c_str(), scratch.get());
    if (hash == nullptr || hash[0] == '*') throw std::runtime_error("the password hash failed");
    return hash;
}

}  // namespace

std::string newCredential()
{
    return randomHex(20);
}

std::string newID(std::string_view prefix)
{
    return std::string(prefix) + '-' + randomHex(8);
}

std::string hashSecret(const std::string& secret)
{
    std::array<char, CRYPT_GENSALT_OUTPUT_SIZE> setting{};
    if (crypt_gensalt_rn(kHashMethod, kHashCost, nullptr, 0, setting.data(), static_cast<int>(setting.size())) ==
        nullptr) {
        throw std::runtime_error("the password hash is not available");
    }
    return hashWith(secret, setting.data());
}

bool secretMatches(const std::string& secret, const std::string& hash)
{
    // A secret longer than the method takes cannot be anybody's.
    if (secret.size() >= CRYPT_MAX_PASSPHRASE_SIZE) return false;
    if (hash.empty()) {
        hashSecret(secret);
        return false;
    }
    return sameText(hashWith(secret, hash), hash);
}

}  // namespace service
