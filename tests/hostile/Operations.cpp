#include "tests/hostile/Operations.h"

#include <algorithm>
#include <map>
#include <numeric>

#include "tests/client/TimedOperations.h"
#include "tests/client/WireOperations.h"
#include "tests/support/WireFile.h"

namespace kzn::test {

namespace {

std::string joined(const WireLines& lines)
{
    return std::accumulate(lines.begin(), lines.end(), std::string(),
                           [](std::string all, const std::string& line) { return std::move(all) + line + '\n'; });
}

// One example that posts and succeeds, of each operation.
std::map<std::string, WireCase> examples()
{
    const std::filesystem::path folder = std::filesystem::path(PVWAPI_SOURCE_DIR) / "tests" / "wire";
    std::map<std::string, WireCase> found;
    for (const std::string& name : wireCaseNames(folder)) {
        WireCase each = readWireCase(folder, name);
        const bool isPost = each.request && each.request->method == "POST";
        const std::string operation = each.operation;
        if (isPost && (each.result == 1 || operation == "logout")) found.emplace(operation, std::move(each));
    }
    return found;
}

Done called(const WireOperation& operation, const WireFields& arguments, CWapiClient& client)
{
    WireCall call(arguments);
    Done done;
    done.result = operation.call(client, call);
    done.outputs = joined(call.outputs());
    done.isUntouched = call.outputs() == call.outputsBefore();
    return done;
}

HostileOperation::Reads readsOf(const std::string& name)
{
    using enum HostileOperation::Reads;
    if (name == "logout") return nothing;
    return name == "WapiProxyCall" ? anything : document;
}

HostileOperation transfer(const TimedOperation& operation)
{
    const bool sends = std::string_view(operation.name) == "SetSpaceIcon";
    const auto reads = sends ? HostileOperation::Reads::picture : HostileOperation::Reads::file;
    return {operation.name, reads, [&operation](CWapiClient& client) {
                return Done{operation.call(client), {}, true};
            }};
}

}  // namespace

std::vector<HostileOperation> hostileOperations(const std::string& server)
{
    std::vector<HostileOperation> all;
    const auto cases = examples();
    for (const WireOperation& operation : wireOperations()) {
        const auto example = cases.find(operation.name);
        if (example == cases.end()) continue;  // one that never sends anything
        WireFields arguments = example->second.arguments;
        for (WireField& argument : arguments) {
            argument.value = withPlaceholder(argument.value, "url", server + "/kznconnect/op.do");
            argument.value = withPlaceholder(argument.value, "server", server);
        }
        all.push_back({operation.name, readsOf(operation.name),
                       [&operation, arguments](CWapiClient& client) { return called(operation, arguments, client); }});
    }
    for (const TimedOperation& operation : timedOperations()) {
        const std::string_view name = operation.name;
        if (name == "SetSpaceIcon" || name == "GetSpaceIcon") all.push_back(transfer(operation));
    }
    return all;
}

}  // namespace kzn::test
