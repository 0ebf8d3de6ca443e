#pragma once

#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>

#include "service/base/JsonForward.h"

namespace service {

// What was sent or read is not what is described; one line that says where and why.
class JsonError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

Json parseJson(std::string_view text);

// Reads the members of an object. One that nobody has asked for when it ends is a mistake of the writer's.
class JsonObject {
public:
    // `what` is how messages call it, for example "the user anna".
    JsonObject(const Json& value, std::string what);

    bool has(const char* name);
    std::string text(const char* name);
    std::string text(const char* name, std::string otherwise);
    bool truth(const char* name, bool otherwise);
    long long number(const char* name, long long least, long long most);
    long long number(const char* name, long long otherwise, long long least, long long most);
    double share(const char* name, double otherwise);  // from 0 to 1

    // An empty one where there is none.
    const Json& list(const char* name);
    const Json& object(const char* name);

    void setName(std::string what) { what_ = std::move(what); }
    const std::string& name() const { return what_; }

    void end() const;

private:
    const Json* find(const char* name);
    [[noreturn]] void wrong(const char* name, const std::string& why) const;

    const Json& value_;
    std::string what_;
    std::set<std::string> known_;
};

}  // namespace service
