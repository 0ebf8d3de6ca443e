#pragma once

#include <string>

#include "service/Context.h"
#include "service/store/Libraries.h"

namespace service::rules {

// The library, for the one who may change it.
store::Library requireWritable(const Context& context, const std::string& libraryID);

inline bool mayWrite(const Context& context, const store::Library& library)
{
    return library.ownerID == context.session.userID;
}

}  // namespace service::rules
