#include "service/commands/Commands.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <stdexcept>

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
    Access access;  // of "execute", the task says it
    Pace pace;
    void (*run)(Context& context, const http::Form& form, Reply& reply);
};

struct Task {
    std::string_view name;
    Access access;
    Pace pace;
    void (*run)(Context& context, const xml::Node& xml, Reply& reply);
};

constexpr std::array kCommands{
    Command{"login", Caller::anyone, Access::proves, Pace::slow, login},
    Command{"logout", Caller::signedIn, Access::writes, Pace::usual, logout},
    Command{"cloneSession", Caller::signedIn, Access::writes, Pace::usual, cloneSession},
    Command{"get", Caller::signedIn, Access::mayWrite, Pace::usual, get},
    Command{"execute", Caller::signedIn, Access::reads, Pace::usual, execute},
    Command{"set", Caller::signedIn, Access::writes, Pace::usual, set},
    Command{"delete", Caller::signedIn, Access::writes, Pace::usual, deleteObjects},
    Command{"remove", Caller::signedIn, Access::writes, Pace::usual, remove},
    Command{"create", Caller::signedIn, Access::writes, Pace::usual, create},
    Command{"add", Caller::signedIn, Access::writes, Pace::usual, add},
};

constexpr std::array kTasks{
    Task{"AddTabs", Access::writes, Pace::usual, addTabs},
    Task{"BulkSpaceInvite", Access::writes, Pace::usual, bulkSpaceInvite},
    Task{"ChangeRole", Access::writes, Pace::usual, changeRole},
    Task{"CloneWorkspace", Access::writes, Pace::usual, cloneWorkspace},
    Task{"CreateRDQAVAccounts", Access::writes, Pace::usual, createAvAccounts},
    Task{"CreateWorkspaceUsingApp", Access::writes, Pace::usual, createWorkspaceUsingApp},
    Task{"DeleteWorkspace", Access::writes, Pace::usual, deleteWorkspace},
    Task{"GetUserLibraries", Access::reads, Pace::usual, getUserLibraries},
    Task{"GetUserLibrariesWithApps", Access::reads, Pace::usual, getUserLibrariesWithApps},
    Task{"GetUserProfile", Access::reads, Pace::usual, getUserProfile},
    Task{"GetWorkspaceNotificationCount", Access::mayWrite, Pace::usual, getNotificationCount},
    Task{"JoinSpace", Access::writes, Pace::usual, joinSpace},
    Task{"LeaveSpace", Access::writes, Pace::usual, leaveSpace},
    Task{"ManageSpaceIcon", Access::writes, Pace::usual, manageSpaceIcon},
    Task{"ProbeAccess", Access::reads, Pace::open, probeAccess},
    Task{"RunScript", Access::mayWrite, Pace::open, runScript},
    Task{"SaveWorkspaceAsApp", Access::writes, Pace::usual, saveWorkspaceAsApp},
    Task{"SendNotificationEvent", Access::writes, Pace::usual, sendNotificationEvent},
};

template <class Table>
auto entryOf(const Table& table, std::string_view name) -> decltype(table.data())
{
    const auto* const found =
        std::find_if(table.data(), table.data() + table.size(), [name](const auto& each) { return each.name == name; });
    return found == table.data() + table.size() ? nullptr : found;
}

const Command& findCommand(const std::string& name)
{
    if (const Command* const command = entryOf(kCommands, name)) return *command;
    throw Refusal(exceptionid::kUnknownCommand, "unknown command " + inQuotes(name));
}

const Task* taskOf(const http::Form& form)
{
    return form.text("cmd") == "execute" ? entryOf(kTasks, form.text("task")) : nullptr;
}

// A session lives one duration beyond its last use. The end is put off by a little more than that, so that a run of
// requests does not write to the data file with each of them. The session with its new end; none where the old one is
// good enough.
store::Session prolongedOf(const Context& context)
{
    constexpr long long kSurplusShare = 100;
    store::Session session = context.session;
    const long long end = context.now + session.duration;
    if (session.cred.empty() || session.expires >= end) return {};
    session.expires = end + session.duration / kSurplusShare;
    return session;
}

std::string answerOf(Context& context, const Command& command, const http::Form& form)
{
    Reply reply;
    command.run(context, form, reply);
    return successText(reply);
}

std::string textOf(const Refusal& refusal)
{
    return failureText(refusal.what(), refusal.exceptionID());
}

// The session's life is prolonged even where the command itself is refused, and in the same transaction.
std::string answerInTransaction(Context& context, const Command& command, const http::Form& form)
{
    store::Transaction transaction(context.database);
    if (command.caller == Caller::signedIn) {
        context.session = liveSession(context, form.text("cred"));
        prolong(context.database, prolongedOf(context));
    }
    std::string text;
    try {
        store::Savepoint savepoint(context.database);
        text = answerOf(context, command, form);
        savepoint.keep();
    } catch (const Refusal& refusal) {
        text = textOf(refusal);
    }
    transaction.commit();
    return text;
}

Finding findInSnapshot(Context& context, const Command& command, const http::Form& form)
{
    const store::Snapshot snapshot(context.database);
    Finding finding;
    if (command.access == Access::proves) {
        finding.proof = prove(context, form);
        return finding;
    }
    if (command.caller == Caller::signedIn) context.session = liveSession(context, form.text("cred"));
    try {
        finding.text = answerOf(context, command, form);
    } catch (const Refusal& refusal) {
        finding.text = textOf(refusal);
    }
    finding.prolonged = prolongedOf(context);
    finding.caller = context.session.userName;
    return finding;
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

Way wayOf(const http::Form& form)
{
    if (const Task* const task = taskOf(form)) return {task->access, task->pace};
    const Command* const command = entryOf(kCommands, form.text("cmd"));
    return command == nullptr ? Way{Access::reads, Pace::usual} : Way{command->access, command->pace};
}

void prolong(store::Database& database, const store::Session& session)
{
    if (session.cred.empty()) return;
    store::touchSession(database, session.cred, session.expires);
}

Finding findOut(store::Database& reader, const Settings& settings, const http::Form& form)
{
    try {
        Context context{reader, settings, settings.clock.now(), {}};
        return findInSnapshot(context, findCommand(form.required("cmd")), form);
    } catch (const store::OnlyReads&) {
        if (wayOf(form).access != Access::reads) return {};
        return {errorText(std::logic_error("a command that only reads was to write"))};
    } catch (const Refusal& refusal) {
        return {textOf(refusal)};
    } catch (const std::exception& error) {
        return {errorText(error)};
    }
}

std::string errorText(const std::exception& error)
{
    std::clog << std::string("a request failed: ") + error.what() + '\n' << std::flush;
    return failureText("the service could not carry out the request", exceptionid::kInternal);
}

std::string answerForm(store::Database& database, const Settings& settings, const http::Form& form,
                       const Upload* upload, const Proof* proof, std::string* caller)
{
    try {
        Context context{database, settings, settings.clock.now(), {}, upload, proof};
        std::string text = answerInTransaction(context, findCommand(form.required("cmd")), form);
        if (caller != nullptr) *caller = context.session.userName;
        return text;
    } catch (const Refusal& refusal) {
        return textOf(refusal);
    } catch (const std::exception& error) {
        return errorText(error);
    }
}

void runTask(Context& context, const std::string& name, const xml::Node& xml, Reply& reply)
{
    if (const Task* const task = entryOf(kTasks, name)) return task->run(context, xml, reply);
    throw Refusal(exceptionid::kUnknownTask, "unknown task " + inQuotes(name));
}

}  // namespace service::commands
