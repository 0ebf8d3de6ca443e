#pragma once

#include <exception>
#include <optional>
#include <string>
#include <string_view>

#include "service/Context.h"
#include "service/commands/Reply.h"
#include "service/http/Form.h"
#include "service/xml/Node.h"

namespace service::commands {

// What a form's command does with the data file. One that may write is tried by reading, and done again by who writes
// where it comes to a change; proving is read before anything else.
enum class Access { reads, mayWrite, proves, writes };

// How long it takes: as long as what it reads is large, or in any case longer than it takes to have another thread do
// it, or without a bound but that of a script.
enum class Pace { usual, slow, open };

struct Way {
    Access access;
    Pace pace;
};
Way wayOf(const http::Form& form);

// What becomes of a form where nothing can be changed.
struct Finding {
    std::string text;            // the reply; empty where it takes a change to make it
    store::Session prolonged{};  // its end has to be put off before the reply goes out; without a credential it is none
    std::optional<Proof> proof{};  // of who signs in
    std::string caller{};          // the name of the session's user
};
Finding findOut(store::Database& reader, const Settings& settings, const http::Form& form);

// Puts the end of a session off that was used, where it is still there.
void prolong(store::Database& database, const store::Session& session);

// Answers one form: finds the command, checks the credential, runs it in one transaction. Never throws for anything
// that a form can hold; the answer is always the text of a reply. `caller` becomes the name of the session's user.
std::string answerForm(store::Database& database, const Settings& settings, const http::Form& form,
                       const Upload* upload = nullptr, const Proof* proof = nullptr, std::string* caller = nullptr);

// The reply where something is wrong with the service itself, which is said on standard error.
std::string errorText(const std::exception& error);

// The session of a live credential; refused where it is unknown or has expired.
store::Session liveSession(const Context& context, const std::string& cred);

// The picture of a workspace that the owner of the credential is in; refused where there is none.
std::string iconContent(store::Database& database, const Settings& settings, const std::string& iconName,
                        const std::string& cred, std::string* caller = nullptr);

// Runs a task of the execute command; refuses a name that no task has.
void runTask(Context& context, const std::string& name, const xml::Node& xml, Reply& reply);

}  // namespace service::commands
