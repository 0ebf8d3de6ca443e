#include "service/web/Files.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

namespace service::web {

// Made of the files beside this one when the program is built.
extern const std::span<const File> kFiles;

namespace {

constexpr std::array<std::pair<std::string_view, const char*>, 4> kTypes{{
    {".html", "text/html; charset=utf-8"},
    {".css", "text/css; charset=utf-8"},
    {".js", "text/javascript; charset=utf-8"},
    {".svg", "image/svg+xml"},
}};

constexpr const char* kPolicy =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; connect-src 'self'; base-uri 'none';"
    " form-action 'none'; frame-ancestors 'none'; require-trusted-types-for 'script'";

}  // namespace

const File* findFile(std::string_view name)
{
    const auto found = std::ranges::find(kFiles, name, &File::name);
    return found == kFiles.end() ? nullptr : &*found;
}

http::Response responseOf(const File& file)
{
    http::Response response;
    response.body = file.content;
    for (const auto& [ending, type] : kTypes) {
        if (file.name.ends_with(ending)) response.contentType = type;
    }
    response.headers = {{"Content-Security-Policy", kPolicy},
                        {"X-Content-Type-Options", "nosniff"},
                        {"Referrer-Policy", "no-referrer"},
                        {"Cross-Origin-Opener-Policy", "same-origin"},
                        {"Cross-Origin-Resource-Policy", "same-origin"},
                        {"Cache-Control", "no-store"}};
    return response;
}

}  // namespace service::web
