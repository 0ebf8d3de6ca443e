// The operations that a fuzzer calls, with the arguments of their first wire examples.
#pragma once

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>

#include "fuzz/Check.h"
#include "tests/client/WireOperations.h"

namespace fuzz {

/// Operations by their names, with the arguments of an example; those that send nothing have no place here.
class Calls {
public:
    /// `server` is where the addresses among the arguments lead.
    explicit Calls(const std::string& server)
    {
        const std::filesystem::path folder = std::filesystem::path(PVWAPI_SOURCE_DIR) / "tests/wire";
        for (const std::string& name : wireCaseNames(folder)) {
            WireCase wire = readWireCase(folder, name);
            if (wire.result != 1 || !wire.request || arguments_.contains(wire.operation)) continue;
            for (WireField& argument : wire.arguments) {
                argument.value = withPlaceholder(argument.value, "url", server + "/op.do");
                argument.value = withPlaceholder(argument.value, "server", server);
            }
            arguments_.emplace(wire.operation, std::move(wire.arguments));
        }
    }

    /// An unknown name means some operation all the same.
    const WireOperation& named(std::string_view name) const
    {
        const auto found = std::ranges::find(wireOperations(), name, &WireOperation::name);
        if (found != wireOperations().end()) return *found;
        return wireOperations()[static_cast<std::size_t>(fuzz::hash(name) % wireOperations().size())];
    }

    WireFields argumentsOf(const WireOperation& operation) const
    {
        const auto found = arguments_.find(operation.name);
        return found == arguments_.end() ? WireFields{{"extra1", ""}, {"extra2", ""}} : found->second;
    }

private:
    std::map<std::string, WireFields> arguments_;
};

}  // namespace fuzz
