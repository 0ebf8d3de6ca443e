// pvwapi-log: the calls that a log of the library holds.
#include <cstdio>
#include <exception>

#include "log/Options.h"
#include "log/Problem.h"
#include "log/Reader.h"
#include "log/System.h"
#include "log/Text.h"

namespace {

using namespace logreader;

constexpr int kDone = 0;
constexpr int kProblem = 2;

void run(const std::vector<std::string>& words)
{
    const Options options = readOptions(words, system::outputColumns());
    if (options.help.empty()) return readLog(options);
    const bool isWritten = std::fputs(options.help.c_str(), stdout) >= 0;
    if (!isWritten || std::fflush(stdout) != 0) throw Problem("the output cannot be written");
}

int report(const std::exception& error) noexcept
try {
    std::fputs(("pvwapi-log: " + harmless(error.what()) + "\n").c_str(), stderr);
    return kProblem;
} catch (...) {
    return kProblem;
}

}  // namespace

int main(int argc, char** argv)
{
    try {
        system::prepareOutput();
        run(system::arguments(argc, argv));
        return kDone;
    } catch (const std::exception& error) {
        return report(error);
    }
}
