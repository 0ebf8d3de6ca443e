#include "service/base/Refusal.h"
#include "service/commands/Commands.h"
#include "service/commands/Handlers.h"
#include "service/script/Interpreter.h"

namespace service::commands {

namespace {

void runStepTask(Context& context, const std::string& task, const xml::Node& xml, xml::Node& result)
{
    if (task == "RunScript") throw Refusal(exceptionid::kBadScript, "a script cannot run a script");
    Reply reply;
    runTask(context, task, xml, reply);
    result.children = std::move(reply.payload.children);
}

}  // namespace

void runScript(Context& context, const xml::Node& xml, Reply& reply)
{
    script::Interpreter(context, runStepTask).run(xml, reply.payload);
}

}  // namespace service::commands
