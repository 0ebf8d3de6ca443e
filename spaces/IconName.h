// The name under which a downloaded icon is kept.
#pragma once

#include "pvutil/StringEx.h"

namespace wapi {

/// The last component of the address, without its query, made harmless: whatever the address holds, it is the name of a
/// plain file right inside the folder it is put in. "temp" where the address has no last component.
CStringT iconFileName(const CStringT& address);

}  // namespace wapi
