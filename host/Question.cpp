#include "host/Question.h"

#include "host/Errors.h"
#include "host/System.h"
#include "host/Terminal.h"
#include "host/Text.h"

namespace host {

namespace {

/// The question with the values of its arguments, in which no terminal finds a command.
std::string filledIn(const std::string& question, const Values& values)
{
    std::string text;
    std::size_t from = 0;
    for (std::size_t open = 0; (open = question.find('{', from)) != std::string::npos;) {
        const std::size_t close = question.find('}', open);
        const auto value = values.find(question.substr(open + 1, close - open - 1));
        text += question.substr(from, open - from);
        if (value != values.end()) text += harmless(std::string_view(value->second.back()));
        from = close + 1;
    }
    return text + question.substr(from);
}

bool saysYes(std::string answer)
{
    while (!answer.empty() && (answer.back() == '\r' || answer.back() == ' ')) answer.pop_back();
    return answer == "y" || answer == "Y" || answer == "yes" || answer == "Yes" || answer == "YES";
}

}  // namespace

void requireYes(const Request& request)
{
    const std::string& question = request.command->question;
    if (question.empty() || request.settings.agreed || request.settings.sight.isDry) return;
    if (!system::inputIsTerminal() || !system::errorIsTerminal()) return;

    // The wait ends by itself; there is nothing else to stop yet.
    const system::Interrupts interrupts([] {});
    if (!saysYes(system::ask(filledIn(question, request.values) + " [y/N] "))) throw LocalProblem("nothing was done");
}

}  // namespace host
