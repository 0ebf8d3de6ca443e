// What a program of the tests takes of the C library, as the headers of Visual C++ declare it.
#pragma once

typedef struct _iobuf {
    char* next;
    int left;
    char* start;
    int marks[4];
    char* name;
} FILE;

__declspec(dllimport) FILE* __cdecl __iob_func(void);
__declspec(dllimport) int __cdecl fputc(int unit, FILE* to);
__declspec(dllimport) int __cdecl printf(const char* form, ...);

#define stdout (__iob_func() + 1)
#define stderr (__iob_func() + 2)
