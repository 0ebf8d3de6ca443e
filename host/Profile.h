// Profiles: settings that the user keeps in a configuration file.
#pragma once

#include <string>
#include <vector>

#include "host/Command.h"

namespace host {

/// What the profile `name` of the configuration file gives, and what the file gives to every profile: for those of
/// `arguments` that may stand in one, but not where the environment says something else. The file is the user's own
/// unless `file` names another. Throws LocalProblem where the file holds anything else, or the profile is not in it.
Values readProfile(const std::string& file, const std::string& name, const std::vector<Argument>& arguments);

}  // namespace host
