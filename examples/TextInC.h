// Texts of the C interface for programs that speak UTF-8.
#pragma once

#include <stdio.h>
#include <stdlib.h>

#include <pvwapi_c.h>

/// One code point in UTF-8.
static inline void putPoint(FILE* to, unsigned long point)
{
    if (point < 0x80) {
        fputc((int)point, to);
        return;
    }
    int shift = point < 0x800 ? 6 : point < 0x10000 ? 12 : 18;
    const int first = shift == 6 ? 0xC0 : shift == 12 ? 0xE0 : 0xF0;
    fputc(first | (int)(point >> shift), to);
    while ((shift -= 6) >= 0) fputc(0x80 | (int)(point >> shift & 0x3F), to);
}

static inline void print(FILE* to, pvw_text text)
{
    for (size_t at = 0; at < text.length; ++at) {
        unsigned long point = text.units[at];
        if (point >= 0xD800 && point < 0xDC00 && at + 1 < text.length) {
            point = 0x10000 + ((point - 0xD800) << 10) + (text.units[++at] - 0xDC00UL);
        }
        putPoint(to, point);
    }
}

/// A variable of the environment, which is plain ASCII here.
static inline pvw_text environment(const char* name, pvw_char* units, size_t size)
{
    const char* value = getenv(name);
    pvw_text text = {units, 0};
    for (; value != NULL && value[text.length] != 0 && text.length < size; ++text.length) {
        units[text.length] = (unsigned char)value[text.length];
    }
    return text;
}
