#pragma once

#include <string_view>

namespace service::seed {

// The seed of the demo organisation, a small design office; README.md lists who and what.
std::string_view demoText();

}  // namespace service::seed
