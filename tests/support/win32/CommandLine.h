// How a program's runtime reads the words of its command line.
#pragma once

#include <cstddef>
#include <string>

/// One word so that the program's runtime reads it back as it was.
inline std::wstring quotedWord(const std::wstring& word)
{
    std::wstring text = L"\"";
    std::size_t slashes = 0;
    for (const wchar_t unit : word) {
        if (unit == L'"') text.append(slashes + 1, L'\\');
        slashes = unit == L'\\' ? slashes + 1 : 0;
        text += unit;
    }
    return text.append(slashes, L'\\') + L"\"";
}
