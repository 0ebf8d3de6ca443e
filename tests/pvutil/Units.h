// Texts written unit by unit, for what no well-formed UTF-8 can say.
#pragma once

#include <initializer_list>

#include "pvutil/StringEx.h"

inline CStringT units(std::initializer_list<unsigned> values)
{
    CStringT text;
    for (const unsigned value : values) text += static_cast<kzn::pvutil::stringex::CharT>(value);
    return text;
}
