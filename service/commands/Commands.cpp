#include "service/commands/Commands.h"

#include <array>
#include <iostream>

#include "service/base/Clock.h"
#include "service/base/Refusal.h"
#include "service/base/Text.h"
#include "service/commands/Handlers.h"
#include "service/store/Database.h"
#include "service/store/Sessions.h"

namespace service::commands {

namespace {

enum class Caller { anyone, signedIn };

struct Command {
    std::string_view name;
    Caller caller;
    void (*run)(Context& context, const http::Form& form, Reply& reply);
};

struct Task {
    std::string_view name;
    void (*run)(Context& context, const xml::Node& xml, Reply& reply);
};

constexpr std::array kCommands{
    Command{"login", Caller::anyone, login},
    Command{"logout", Caller::signedIn, logout},
    Command{"cloneSession", Caller::signedIn, cloneSession},
    Command{"get", Caller::signedIn, get},
    Command{"execute", Caller::signedIn, execute},
    Command{"set", Caller::signedIn, set},
    Command{"delete", Caller::signedIn, deleteObjects},
    Command{"remove", Caller::signedIn, remove},
    Command{"create", Caller::signedIn, create},
    Command{"add", Caller::signedIn, add},
};

constexpr std::array kTasks{
    Task{"AddTabs", addTabs},
    Task{"BulkSpaceInvite", bulkSpaceInvite},
    Task{"ChangeRole", changeRole},
    Task{"CloneWorkspace", cloneWorkspace},
    Task{"CreateRDQAVAccounts", createAvAccounts},
    Task{"CreateWorkspaceUsingApp", createWorkspaceUsingApp},
    Task{"DeleteWorkspace", deleteWorkspace},
    Task{"GetUserLibraries", getUserLibraries},
    Task{"GetUserLibrariesWithApps", getUserLibrariesWithApps},
    Task{"GetUserProfile", getUserProfile},
    Task{"GetWorkspaceNotificationCount", getNotificationCount},
    Task{"JoinSpace", joinSpace},
    Task{"LeaveSpace", leaveSpace},
    Task{"ManageSpaceIcon", manageSpaceIcon},
    Task{"ProbeAccess", probeAccess},
    Task{"RunScript", runScript},
    Task{"SaveWorkspaceAsApp", saveWorkspaceAsApp},
    Task{"SendNotificationEvent", sendNotificationEvent},
};

const Command& findCommand(const std::string& name)
{
    for (const Command& command : kCommands) {
        if (command.name == name) return command;
    }
    throw Refusal(exceptionid::kUnknownCommand, "unknown command " + quoted(name));
}

// A session lives one duration beyond its last use. The end is put off by a little more than that, so that a run of
// requests does not write to the data file with each of them.
void keepAlive(const Context& context)
{
    constexpr long long kSurplusShare = 100;
    const store::Session& session = context.session;
    const long long end = context.now + session.duration;
    if (session.expires >= end) return;
    store::touchSession(context.database, session.cred, end + session.duration / kSurplusShare);
}

// The session's life is prolonged even where the command itself is refused, and in the same transaction.
std::string answerInTransaction(Context& context, const Command& command, const http::Form& form)
{
    store::Transaction transaction(context.database);
    if (command.caller == Caller::signedIn) {
        context.session = liveSession(context, form.text("cred"));
        keepAlive(context);
    }
    std::string text;
    try {
        store::Savepoint savepoint(context.database);
        Reply reply;
        command.run(context, form, reply);
        text = successText(reply);
        savepoint.keep();
    } catch (const Refusal& refusal) {
        text = failureText(refusal.what(), refusal.exceptionID());
    }
    transaction.commit();
    return text;
}

}  // namespace

store::Session liveSession(const Context& context, const std::string& cred)
{
    if (cred.empty()) throw Refusal(exceptionid::kInvalidCredential, "the request has no credential");
    std::optional<store::Session> session = store::findSession(context.database, cred);
    if (!session) throw Refusal(exceptionid::kInvalidCredential, "the credential is not known");
    if (session->expires <= context.now) throw Refusal(exceptionid::kSessionExpired, "the session has expired");
    return std::move(*session);
}

std::string answerForm(store::Database& database, const Settings& settings, const http::Form& form,
                       const Upload* upload)
{
    try {
        Context context{database, settings, settings.clock.now(), {}, upload};
        const Command& command = findCommand(form.required("cmd"));
        return answerInTransaction(context, command, form);
    } catch (const Refusal& refusal) {
        return failureText(refusal.what(), refusal.exceptionID());
    } catch (const std::exception& error) {
        std::clog << "a request failed: " << error.what() << std::endl;
        return failureText("the service could not carry out the request", exceptionid::kInternal);
    }
}

void runTask(Context& context, const std::string& name, const xml::Node& xml, Reply& reply)
{
    for (const Task& task : kTasks) {
        if (task.name == name) return task.run(context, xml, reply);
    }
    throw Refusal(exceptionid::kUnknownTask, "unknown task " + quoted(name));
}

}  // namespace service::commands
