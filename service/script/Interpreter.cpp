#include "service/script/Interpreter.h"

#include <algorithm>
#include <array>

#include "service/base/Refusal.h"
#include "service/base/Text.h"
#include "service/script/Query.h"
#include "service/store/Database.h"

namespace service::script {

namespace {

constexpr std::string_view kLoopVariable = "$$loopVar$$";
constexpr long long kMaxPage = 1'000'000;
constexpr std::array<std::string_view, 11> kStepElements{"cmd",       "type",     "id",  "where", "select", "page",
                                                         "pageStart", "pageSize", "set", "task",  "xml"};

[[noreturn]] void refuse(const std::string& reason)
{
    throw Refusal(exceptionid::kBadScript, reason);
}

void replaceAll(std::string& text, std::string_view value)
{
    std::size_t at = text.find(kLoopVariable);
    if (at == std::string::npos) return;
    std::string result;
    std::size_t done = 0;
    for (; at != std::string::npos; at = text.find(kLoopVariable, done)) {
        result.append(text, done, at - done).append(value);
        done = at + kLoopVariable.size();
    }
    text = result.append(text, done);
}

// The value goes into the texts of the parsed script, so it can never turn into markup. An inner loop has a variable
// of its own under the same name.
void substitute(xml::Node& node, std::string_view value)
{
    replaceAll(node.text, value);
    for (xml::Node& child : node.children) {
        if (child.name != "foreach") substitute(child, value);
    }
}

std::size_t sizeOf(const xml::Node& node)
{
    constexpr std::size_t kTags = 5;
    std::size_t size = 2 * node.name.size() + kTags + node.text.size();
    for (const xml::Node& child : node.children) size += sizeOf(child);
    return size;
}

std::size_t numberIn(const xml::Node& step, std::string_view name, long long most, std::size_t absent)
{
    const xml::Node* const element = step.child(name);
    if (element == nullptr) return absent;
    const std::optional<long long> number = wholeNumber(trimmed(element->text), 1, most);
    if (!number) refuse(std::string(name) + " must be a number from 1 to " + std::to_string(most));
    return static_cast<std::size_t>(*number);
}

void checkStep(const xml::Node& step)
{
    for (const xml::Node& child : step.children) {
        if (std::find(kStepElements.begin(), kStepElements.end(), child.name) == kStepElements.end()) {
            refuse("unknown element " + inQuotes(child.name) + " in a step");
        }
        if (child.name != "set" && step.child(child.name) != &child) {
            refuse("the element " + inQuotes(child.name) + " stands twice in a step");
        }
    }
}

Query queryOf(const xml::Node& step, const Context& context)
{
    Query query{objects::objectType(trimmed(step.textAt("type"))), std::string(trimmed(step.textAt("id"))), {}};
    if (step.child("id") != nullptr && query.id.empty()) refuse("the id of a step is empty");
    if (const xml::Node* const where = step.child("where")) {
        query.where = Condition::read(*where, context, query.type.element);
    }
    if (const xml::Node* const select = step.child("select")) {
        query.select = Selection(select->text, query.type.element);
    }
    query.page = numberIn(step, step.child("page") != nullptr ? "page" : "pageStart", kMaxPage, 1);
    query.pageSize = numberIn(step, "pageSize", static_cast<long long>(Query::kMaxPageSize), Query::kMaxPageSize);
    return query;
}

}  // namespace

Interpreter::Interpreter(Context& context, TaskRunner runTask, ScriptLimits limits)
    : context_(context),
      runTask_(std::move(runTask)),
      limits_(limits),
      end_(std::chrono::steady_clock::now() + limits.time)
{
}

void Interpreter::run(const xml::Node& script, xml::Node& result)
{
    if (script.name != "script") refuse("a script starts with <script>, not with " + inQuotes(script.name));
    if (script.children.empty()) refuse("the script has no steps");
    runBlock(script, 0, result);
}

void Interpreter::runBlock(const xml::Node& block, int depth, xml::Node& result)
{
    for (const xml::Node& item : block.children) {
        if (item.name == "step") {
            runStep(item, depth, result);
        } else if (item.name == "foreach") {
            runForeach(item, depth, result);
        } else {
            refuse("unknown element " + inQuotes(item.name) + " in a script");
        }
    }
}

void Interpreter::runStep(const xml::Node& step, int depth, xml::Node& result)
{
    chargeStep();
    checkStep(step);
    const std::string_view command = trimmed(step.textAt("cmd"));
    xml::Node& stepResult = result.add("step");
    if (command == "get" || command == "list") {
        runQuery(step, depth, stepResult);
    } else if (command == "execute") {
        runTaskStep(step, stepResult);
    } else {
        throw Refusal(exceptionid::kUnknownCommand, "unknown command " + inQuotes(command) + " in a script");
    }
    bindVariables(step, stepResult);
    chargeResult(stepResult);
}

void Interpreter::runForeach(const xml::Node& loop, int depth, xml::Node& result)
{
    if (depth == limits_.loopDepth) {
        throw Refusal(exceptionid::kLimitExceeded,
                      "foreach is nested deeper than " + std::to_string(limits_.loopDepth));
    }
    const std::string& name = loop.attribute("var");
    const auto found = variables_.find(name);
    if (found == variables_.end()) refuse("foreach over the unknown variable " + inQuotes(name));
    const std::vector<std::string> values = found->second;
    for (const std::string& value : values) {
        xml::Node body = loop;
        substitute(body, value);
        runBlock(body, depth + 1, result);
    }
}

void Interpreter::runQuery(const xml::Node& step, int depth, xml::Node& result)
{
    const Query query = queryOf(step, context_);
    result.children = answer(context_, query);
    // What a loop visits may have gone since it was noted; a step that names its object itself has to find it.
    if (result.children.empty() && !query.id.empty() && !query.where && depth == 0) {
        throw Refusal(exceptionid::kNoSuchObject, "there is no " + std::string(query.type.element) + " " +
                                                      inQuotes(query.id) + " that you can see");
    }
}

void Interpreter::runTaskStep(const xml::Node& step, xml::Node& result)
{
    const xml::Node* const xml = step.child("xml");
    if (xml == nullptr || xml->children.size() != 1) refuse("a task step needs an xml element that holds one element");
    runTask_(context_, std::string(trimmed(step.textAt("task"))), xml->children.front(), result);
}

void Interpreter::bindVariables(const xml::Node& step, const xml::Node& result)
{
    for (const xml::Node& child : step.children) {
        if (child.name != "set") continue;
        const std::string& name = child.attribute("var");
        const std::string& path = child.attribute("path");
        if (name.empty() || path.empty()) refuse("a set needs var and path");
        variables_[name] = xml::textsAt(result, path);
    }
}

void Interpreter::chargeStep()
{
    if (++steps_ > limits_.steps) {
        throw Refusal(exceptionid::kLimitExceeded,
                      "the script runs more than " + std::to_string(limits_.steps) + " steps");
    }
    if (std::chrono::steady_clock::now() > end_) {
        throw Refusal(exceptionid::kLimitExceeded, "the script takes too long");
    }
    context_.database.spend();
}

void Interpreter::chargeResult(const xml::Node& result)
{
    bytes_ += sizeOf(result);
    if (bytes_ > limits_.resultBytes) {
        throw Refusal(exceptionid::kLimitExceeded, "the script's result is too large");
    }
}

}  // namespace service::script
