// What the last request left behind when it failed.
#pragma once

#include "pvutil/StringEx.h"

struct WAPIMESSAGE {
    int code = 0;
    CStringT reason;       ///< the service's reason, or the library's own text
    CStringT exceptionID;  ///< the service's exception identifier
    CStringT response;     ///< the whole reply of the failed request
    int reserved = 0;

    /// Code 0 and empty texts.
    void clear() noexcept
    {
        code = 0;
        reason.clear();
        exceptionID.clear();
        response.clear();
    }
};
