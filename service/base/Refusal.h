#pragma once

#include <stdexcept>
#include <string>

namespace service {

// The exception identifiers that a reply can carry. A host tells failures apart by them, so they never change.
namespace exceptionid {
inline constexpr const char* kBadRequest = "KZN:BadRequest";
inline constexpr const char* kBadXml = "KZN:BadXml";
inline constexpr const char* kBadScript = "KZN:BadScript";
inline constexpr const char* kLimitExceeded = "KZN:LimitExceeded";
inline constexpr const char* kUnknownCommand = "KZN:UnknownCommand";
inline constexpr const char* kUnknownTask = "KZN:UnknownTask";
inline constexpr const char* kUnknownType = "KZN:UnknownType";
inline constexpr const char* kUnknownEndpoint = "KZN:UnknownEndpoint";
inline constexpr const char* kLoginRefused = "KZN:LoginRefused";
inline constexpr const char* kInvalidCredential = "KZN:InvalidCredential";
inline constexpr const char* kSessionExpired = "KZN:SessionExpired";
inline constexpr const char* kNoSuchObject = "KZN:NoSuchObject";
inline constexpr const char* kAccessDenied = "KZN:AccessDenied";
inline constexpr const char* kConflict = "KZN:Conflict";
inline constexpr const char* kNotOnTape = "KZN:NotOnTape";
inline constexpr const char* kInternal = "KZN:InternalError";
}  // namespace exceptionid

// A rule said no. It travels up to the dispatcher, which undoes the request's changes and answers FAILURE.
class Refusal : public std::runtime_error {
public:
    Refusal(const char* exceptionID, const std::string& reason) : std::runtime_error(reason), exceptionID_(exceptionID)
    {
    }

    const char* exceptionID() const { return exceptionID_; }

private:
    const char* exceptionID_;
};

}  // namespace service
