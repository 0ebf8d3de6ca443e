#pragma once

#include <string>

namespace service::win32 {

// Throws std::runtime_error where a name is no UTF-8.
std::wstring toWide(const std::string& utf8);

}  // namespace service::win32
