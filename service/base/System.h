#pragma once

#include <optional>
#include <string>

// What only the operating system can do or tell; each system has a folder of its own that does it.
namespace service {

long long processID();

// From now on this process is asked to end as soon as the one that started it has ended. Where that has happened
// already it throws std::runtime_error.
void endWithParent();

// The process that has a lock on the file; nothing where no process is known to have one.
std::optional<long long> lockHolder(const std::string& file);

}  // namespace service
