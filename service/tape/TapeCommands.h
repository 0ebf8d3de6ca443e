#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace service::tape {

// Adds the commands record, replay and verify. Where one of them is read, `chosen` becomes what runs it and returns the
// exit status; that throws std::exception where it cannot begin.
void addCommands(CLI::App& app, std::function<int()>& chosen);

}  // namespace service::tape
