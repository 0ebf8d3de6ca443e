#include "service/rules/Icons.h"

#include <algorithm>
#include <array>

#include "service/base/Secret.h"

namespace service::rules {

namespace {

constexpr std::size_t kLongestEnding = 5;

struct Signature {
    std::string_view start;
    const char* type;
};

constexpr std::array kSignatures{
    Signature{"\xFF\xD8\xFF", "image/jpeg"},
    Signature{"\x89PNG\r\n\x1A\n", "image/png"},
    Signature{"GIF8", "image/gif"},
    Signature{"BM", "image/bmp"},
};

bool isEndingCharacter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

}  // namespace

std::string iconURL(const Settings& settings, std::string_view iconName)
{
    return settings.baseURL + std::string(kIconPath) + std::string(iconName);
}

std::string newIconName(std::string_view fileName)
{
    std::string name = newID("icon");
    const std::size_t dot = fileName.rfind('.');
    if (dot == std::string_view::npos) return name;
    const std::string_view ending = fileName.substr(dot + 1);
    const bool plain = std::all_of(ending.begin(), ending.end(), isEndingCharacter);
    if (plain && !ending.empty() && ending.size() <= kLongestEnding) name.append(".").append(ending);
    return name;
}

std::string pictureType(std::string_view content)
{
    for (const Signature& signature : kSignatures) {
        if (content.starts_with(signature.start)) return signature.type;
    }
    return "application/octet-stream";
}

}  // namespace service::rules
