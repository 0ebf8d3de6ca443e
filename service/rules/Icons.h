#pragma once

#include <string>
#include <string_view>

#include "service/Context.h"

namespace service::rules {

inline constexpr std::string_view kIconPath = "/kzndms/icon/";

// The address that a host fetches an icon from, with its credential behind.
std::string iconURL(const Settings& settings, std::string_view iconName);

// A new name for an icon that ends like its file, so that the fetched file can be opened by a viewer.
std::string newIconName(std::string_view fileName);

// What a browser is told about the picture, from its first bytes.
std::string pictureType(std::string_view content);

}  // namespace service::rules
