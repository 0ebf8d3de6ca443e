#pragma once

#include "service/Context.h"
#include "service/commands/Reply.h"
#include "service/http/Form.h"
#include "service/xml/Node.h"

// Every command and every task, each a small function in the file that its topic names.
namespace service::commands {

// SessionCommands.cpp
Proof prove(const Context& context, const http::Form& form);  // takes as long as hashing does, and changes nothing
void login(Context& context, const http::Form& form, Reply& reply);
void logout(Context& context, const http::Form& form, Reply& reply);
void cloneSession(Context& context, const http::Form& form, Reply& reply);

// ObjectCommands.cpp
void get(Context& context, const http::Form& form, Reply& reply);
void execute(Context& context, const http::Form& form, Reply& reply);
void create(Context& context, const http::Form& form, Reply& reply);
void add(Context& context, const http::Form& form, Reply& reply);
void remove(Context& context, const http::Form& form, Reply& reply);

// SetCommand.cpp
void set(Context& context, const http::Form& form, Reply& reply);

// DeleteCommand.cpp
void deleteObjects(Context& context, const http::Form& form, Reply& reply);

// WorkspaceTasks.cpp
void addTabs(Context& context, const xml::Node& xml, Reply& reply);
void cloneWorkspace(Context& context, const xml::Node& xml, Reply& reply);
void deleteWorkspace(Context& context, const xml::Node& xml, Reply& reply);

// AppTasks.cpp
void createWorkspaceUsingApp(Context& context, const xml::Node& xml, Reply& reply);
void saveWorkspaceAsApp(Context& context, const xml::Node& xml, Reply& reply);

// IconTask.cpp
void manageSpaceIcon(Context& context, const xml::Node& xml, Reply& reply);

// MemberTasks.cpp
void bulkSpaceInvite(Context& context, const xml::Node& xml, Reply& reply);
void joinSpace(Context& context, const xml::Node& xml, Reply& reply);
void leaveSpace(Context& context, const xml::Node& xml, Reply& reply);
void changeRole(Context& context, const xml::Node& xml, Reply& reply);

// ProbeTask.cpp
void probeAccess(Context& context, const xml::Node& xml, Reply& reply);

// LibraryTasks.cpp
void getUserLibraries(Context& context, const xml::Node& xml, Reply& reply);
void getUserLibrariesWithApps(Context& context, const xml::Node& xml, Reply& reply);

// UserTasks.cpp
void getUserProfile(Context& context, const xml::Node& xml, Reply& reply);
void createAvAccounts(Context& context, const xml::Node& xml, Reply& reply);

// EventTasks.cpp
void getNotificationCount(Context& context, const xml::Node& xml, Reply& reply);
void sendNotificationEvent(Context& context, const xml::Node& xml, Reply& reply);

// ScriptTask.cpp
void runScript(Context& context, const xml::Node& xml, Reply& reply);

}  // namespace service::commands
