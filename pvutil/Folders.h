// The well-known folders of the user, each with a separator at its end.
#pragma once

#include <optional>

#include "pvutil/StringEx.h"

namespace kzn::pvutil {

using stringex::CStringT;

/// Where applications keep a user's data: the shell's folder on Windows, $XDG_DATA_HOME or ~/.local/share elsewhere.
/// Made if it is not there. Empty where the system names none.
std::optional<CStringT> applicationDataFolder();

/// The folder for temporary files. Empty where the system names none.
std::optional<CStringT> temporaryFolder();

/// Makes `folder` and every folder above it; those it makes are the owner's alone. True when it stands afterwards.
bool createFolders(const CStringT& folder);

/// What parts the names of a path.
extern const stringex::CharT kPathSeparator;

}  // namespace kzn::pvutil
