// pvwapi: the operations of the client library as commands.
#include <cstdio>
#include <exception>

#include "host/CommandLine.h"
#include "host/Errors.h"
#include "host/Question.h"
#include "host/System.h"
#include "host/Text.h"
#include "host/Topics.h"

namespace {

using namespace host;

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kLocalProblem = 2;

Commands allCommands()
{
    Commands all;
    for (const auto topic : {sessionCommands, spacesCommands, tabsCommands, iconCommands, appsCommands, accessCommands,
                             membersCommands, invitationsCommands, rolesCommands, favouritesCommands, userCommands,
                             organisationCommands, librariesCommands, eventsCommands, proxyCommands, selfCommands}) {
        for (Command& command : topic()) all.push_back(std::move(command));
    }
    return all;
}

void print(const std::string& text)
{
    const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
    if (!written || std::fflush(stdout) != 0) throw LocalProblem("the output cannot be written");
}

/// `context` names the command as soon as it is known.
void run(const std::vector<std::string>& words, std::string& context)
{
    const Commands commands = allCommands();
    const Request request = readCommandLine(commands, words);
    if (request.command == nullptr) return print(request.help);

    context = request.command->path + ": ";
    requireYes(request);
    std::string output;
    {
        Call call(request.settings, request.values);
        request.command->run(call);
        output = call.output();
    }
    print(output);
}

int report(const std::string& context, const std::exception& error, int status) noexcept
try {
    const std::string line = "pvwapi: " + context + harmless(std::string_view(error.what())) + "\n";
    std::fputs(line.c_str(), stderr);
    return status;
} catch (...) {
    return kLocalProblem;
}

}  // namespace

int main(int argc, char** argv)
{
    std::string context;
    try {
        system::prepareOutput();
        run(system::arguments(argc, argv), context);
        return kDone;
    } catch (const OperationFailed& error) {
        return report(context, error, kFailed);
    } catch (const std::exception& error) {
        return report(context, error, kLocalProblem);
    }
}
