#pragma once

#include <string>
#include <string_view>

#include "service/Context.h"
#include "service/commands/Reply.h"
#include "service/http/Form.h"
#include "service/xml/Node.h"

namespace service::commands {

// Answers one form: finds the command, checks the credential, runs it in one transaction. Never throws for anything
// that a form can hold; the answer is always the text of a reply.
std::string answerForm(store::Database& database, const Settings& settings, const http::Form& form,
                       const Upload* upload = nullptr);

// The session of a live credential; refused where it is unknown or has expired.
store::Session liveSession(const Context& context, const std::string& cred);

// The picture of a workspace that the owner of the credential is in; refused where there is none.
std::string iconContent(store::Database& database, const Settings& settings, const std::string& iconName,
                        const std::string& cred);

// Runs a task of the execute command; refuses a name that no task has.
void runTask(Context& context, const std::string& name, const xml::Node& xml, Reply& reply);

}  // namespace service::commands
