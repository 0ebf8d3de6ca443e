#pragma once

#include <windows.h>

#include <memory>
#include <string>

namespace service::win32 {

struct FreeLocal {
    void operator()(void* memory) const { LocalFree(memory); }
};
template <class Value>
using Local = std::unique_ptr<Value, FreeLocal>;

// Throws std::runtime_error with what the system calls the error.
[[noreturn]] void fail(const std::string& what, DWORD error = GetLastError());

}  // namespace service::win32
