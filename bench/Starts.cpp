// Whole processes: one that only tells its version, against one that does nothing; the first call of one, against the
// same by libcurl and expat alone.
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <string>
#include <string_view>

#include "bench/LoopbackServer.h"
#include "bench/Report.h"
#include "bench/Timing.h"

using namespace kzn::bench;

namespace {

constexpr int kPairs = 450;

constexpr std::string_view kReply =
    "<kznapi><response><result>SUCCESS</result></response><return><sessionInfo><sessionDuration>3600000</"
    "sessionDuration></sessionInfo></return></kznapi>";

// Its output goes nowhere.
class Start {
public:
    Start()
    {
        posix_spawn_file_actions_init(&actions_);
        posix_spawn_file_actions_addopen(&actions_, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    }
    Start(const Start&) = delete;
    Start& operator=(const Start&) = delete;
    ~Start() { posix_spawn_file_actions_destroy(&actions_); }

    bool operator()(std::string program, std::string argument) const
    {
        std::array<char*, 3> words{program.data(), argument.empty() ? nullptr : argument.data(), nullptr};
        pid_t child = 0;
        int status = 1;
        return ::posix_spawn(&child, words[0], &actions_, nullptr, words.data(), environ) == 0 &&
               ::waitpid(child, &status, 0) == child && status == 0;
    }

private:
    posix_spawn_file_actions_t actions_{};
};

void compareStarts(Report& report, std::string_view what, const Start& start, const std::array<std::string, 2>& subject,
                   const std::array<std::string, 2>& peer, double limit)
{
    const auto seconds = [&](const std::array<std::string, 2>& words) {
        bool well = false;
        const double taken = secondsOf(wallTime, [&] { well = start(words[0], words[1]); });
        report.require(well, "a program has failed");
        return taken;
    };
    report.atMost(what,
                  compareUndisturbed(
                      report.pairs(kPairs), [&] { return seconds(subject); }, [&] { return seconds(peer); }),
                  limit);
}

}  // namespace

int main(int argc, char** argv)
{
    Report report(argc, argv);
    const LoopbackServer server(kReply);
    const Start start;
    compareStarts(report, "pvwapi --version / an empty program", start, {BENCH_HOST, "--version"}, {BENCH_EMPTY, ""},
                  2.5);
    compareStarts(report, "first call of a process / libcurl and expat alone", start, {BENCH_CALL, server.url()},
                  {BENCH_PLAIN_CALL, server.url()}, 1.25);
    return report.status();
}
