#pragma once

#include <string_view>

#include "service/http/Message.h"

// The pages that a browser shows of this service. They are part of the program, and ask nobody else for anything.
namespace service::web {

inline constexpr std::string_view kFolder = "/web/";
inline constexpr std::string_view kStart = "index.html";

struct File {
    std::string_view name;
    std::string_view content;
};

// Null where there is no such file.
const File* findFile(std::string_view name);

// With what keeps a browser to these files alone, whatever a text in them might say.
http::Response responseOf(const File& file);

}  // namespace service::web
