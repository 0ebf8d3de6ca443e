// The log's line of a large reply, against writing the same bytes once.
#include <fcntl.h>
#include <unistd.h>

#include <cstddef>
#include <string>

#include "bench/LogSize.h"
#include "bench/Report.h"
#include "bench/SpaceListText.h"
#include "bench/Timing.h"
#include "client/TraceLog.h"

using namespace kzn::bench;

namespace {

constexpr int kSpaces = 9'000;  // 7 MB of them
constexpr int kPairs = 61;

class PlainFile {
public:
    explicit PlainFile(const std::string& path)
        : file_(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0600))
    {
    }
    PlainFile(const PlainFile&) = delete;
    PlainFile& operator=(const PlainFile&) = delete;
    ~PlainFile() { ::close(file_); }

    bool write(const std::string& bytes) const
    {
        std::size_t done = 0;
        while (done < bytes.size()) {
            const ssize_t written = ::write(file_, bytes.data() + done, bytes.size() - done);
            if (written <= 0) return false;
            done += static_cast<std::size_t>(written);
        }
        return true;
    }

private:
    int file_;
};

}  // namespace

int main(int argc, char** argv)
{
    Report report(argc, argv);
    const std::string reply = spaceListReply(kSpaces);
    const std::string plain = logFile() + ".plain";
    // Each file begins anew, so that both sides find the same room.
    const auto log = [&] {
        wapi::traceLog().openInDataFolder();
        const double seconds = secondsOf(threadTime, [&] { wapi::traceLog().writeUtf8(wapi::LogLevel::debug, reply); });
        report.require(logSize() > reply.size(), "the log was not written");
        return seconds;
    };
    const auto write = [&] {
        const PlainFile file(plain);
        bool well = false;
        const double seconds = secondsOf(threadTime, [&] { well = file.write(reply); });
        report.require(well, "the plain file was not written");
        return seconds;
    };
    report.atMost("log a reply of 7 MB / write its bytes once", compare(report.pairs(kPairs), log, write), 1.5);
    return report.status();
}
