#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "service/Context.h"
#include "service/xml/Node.h"

namespace service::script {

// Runs a task that a step names and puts what it answers into `result`.
using TaskRunner =
    std::function<void(Context& context, const std::string& task, const xml::Node& xml, xml::Node& result)>;

// What one script may cost. Beyond any of these it is refused, and nothing of it has happened.
struct ScriptLimits {
    int steps = 50'000;
    int loopDepth = 4;
    std::size_t resultBytes = 48UL * 1024 * 1024;
    std::chrono::milliseconds time = std::chrono::seconds(10);
};

// Runs scripts: steps in their order, a "step" element in the result for each that ran. A step gets or lists objects,
// or executes a task; "set" keeps texts of its result under a name, and "foreach" repeats steps for each of them.
class Interpreter {
public:
    Interpreter(Context& context, TaskRunner runTask, ScriptLimits limits = {});

    void run(const xml::Node& script, xml::Node& result);

private:
    void runBlock(const xml::Node& block, int depth, xml::Node& result);
    void runStep(const xml::Node& step, int depth, xml::Node& result);
    void runForeach(const xml::Node& loop, int depth, xml::Node& result);
    void runQuery(const xml::Node& step, int depth, xml::Node& result);
    void runTaskStep(const xml::Node& step, xml::Node& result);
    void bindVariables(const xml::Node& step, const xml::Node& result);
    void chargeStep();
    void chargeResult(const xml::Node& result);

    Context& context_;
    TaskRunner runTask_;
    ScriptLimits limits_;
    std::chrono::steady_clock::time_point end_;
    int steps_ = 0;
    std::size_t bytes_ = 0;
    std::map<std::string, std::vector<std::string>> variables_;
};

}  // namespace service::script
