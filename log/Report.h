// How calls are shown.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "log/Calls.h"

namespace logreader {

enum class Secrets { masked, shown };
enum class Process { leftOut, shown };

using Write = std::function<void(std::string_view)>;

/// One line without its end: number, time, process, operation, bytes out and in, result. Harmless to a terminal.
std::string lineOf(const Call& call, Secrets secrets, Process process);

/// The request's fields and the reply, XML with a line an element; each line ends in a line feed. Harmless too.
void writeDetails(const Call& call, Secrets secrets, const Write& write);

/// An object in one line of ASCII without its end.
std::string jsonOf(const Call& call, Secrets secrets);

}  // namespace logreader
