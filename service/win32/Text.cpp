#include "service/win32/Text.h"

#include <windows.h>

#include <stdexcept>

namespace service::win32 {

std::wstring toWide(const std::string& utf8)
{
    const int size = MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, utf8.c_str(), -1, nullptr, 0);
    if (size == 0) throw std::runtime_error("its name is not UTF-8");
    std::wstring text(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, utf8.c_str(), -1, text.data(), size);
    text.pop_back();
    return text;
}

}  // namespace service::win32
