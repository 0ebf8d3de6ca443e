// pvwapi: the operations of the client library as commands.
#include <cstdio>
#include <exception>

#include "host/CommandLine.h"
#include "host/ErrorLine.h"
#include "host/Question.h"
#include "host/System.h"
#include "host/Topics.h"

namespace {

using namespace host;

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

/// What is known of the command line when something goes wrong.
struct Context {
    std::string command;
    Format format = Format::table;
};

/// What the command shows, or the request that it does not send.
std::string outputOf(const Request& request, Call& call)
{
    const bool isDry = request.settings.sight.isDry;
    try {
        request.command->run(call);
        if (!isDry) return call.output();
    } catch (const Failure&) {
        // A request that is not sent fails.
        if (!isDry || call.wire().request().empty()) throw;
    }
    const Json json{{"request", call.wire().requestAsJson()}};
    if (call.wire().request().empty()) return {};
    return request.settings.format == Format::json ? render(json, {}, Format::json, request.settings.look)
                                                   : call.wire().request();
}

/// What is shown is out before the call signs out, however long that takes or whoever ends it.
void perform(const Request& request)
{
    Call call(request.settings, request.values);
    print(outputOf(request, call));
}

void run(const std::vector<std::string>& words, Context& context)
{
    context.format = wantedFormat(words);
    const Commands commands = allCommands();
    const Request request = readCommandLine(commands, words);
    if (request.command == nullptr) return print(request.help);

    context = {request.command->path, request.settings.format};
    requireYes(request);
    perform(request);
}

int report(const Context& context, const Failure& failure) noexcept
try {
    const std::string line = errorLine(context.command, failure, context.format);
    std::fputs(line.c_str(), stderr);
    return static_cast<int>(failure.status());
} catch (...) {
    return static_cast<int>(Status::local);
}

}  // namespace

int main(int argc, char** argv)
{
    Context context;
    try {
        system::prepareOutput();
        run(system::arguments(argc, argv), context);
        return static_cast<int>(Status::done);
    } catch (const Failure& failure) {
        return report(context, failure);
    } catch (const std::exception& error) {
        return report(context, LocalProblem(error.what()));
    }
}
