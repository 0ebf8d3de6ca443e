#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace service {

// 160 random bits as 40 hexadecimal digits. A credential must survive being sent unencoded, so it holds no other sign.
std::string newCredential();

// A name for a new object: the prefix and 64 random bits. Rights guard the objects, not the secrecy of their names.
std::string newID(std::string_view prefix);

std::uint32_t randomNumber();

// What is kept of a password or a token: a salted Argon2id hash.
std::string hashSecret(const std::string& secret);

// An empty `hash` matches nothing, but takes as long as a real one, so that the time taken tells no user names.
bool secretMatches(const std::string& secret, const std::string& hash);

}  // namespace service
