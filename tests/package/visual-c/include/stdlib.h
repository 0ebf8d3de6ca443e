// What a program of the tests takes of the C library, as the headers of Visual C++ declare it.
#pragma once

__declspec(dllimport) char* __cdecl getenv(const char* name);
__declspec(dllimport) __declspec(noreturn) void __cdecl exit(int status);
