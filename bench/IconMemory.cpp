// The heap that a picture takes on its way up and down: one picture, and next to nothing beside it.
#include <unistd.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include "bench/HeapMeter.h"
#include "bench/LoopbackServer.h"
#include "bench/Report.h"
#include "client/WapiClient.h"

using namespace kzn::bench;
using kzn::pvutil::stringex::FromUtf8;
using kzn::pvutil::stringex::ToUtf8;

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLargest = std::size_t{64} << 20;  // the most that the library sends
constexpr double kMost = 1.1;
constexpr const char* kAccepted =
    "<kznapi><response><result>SUCCESS</result></response><return><url>kept</url></return></kznapi>";

class Picture {
public:
    explicit Picture(std::size_t size)
        : file_(fs::temp_directory_path() / ("pvwapi-picture-" + std::to_string(getpid())))
    {
        std::ofstream(file_).close();
        fs::resize_file(file_, size);
    }
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;
    ~Picture() { fs::remove(file_); }

    CStringT path() const { return FromUtf8(file_.string()); }

private:
    fs::path file_;
};

/// The peak of a call, in pictures.
template <typename Call>
double peakOf(CWapiClient& client, Call call)
{
    resetHeapUse();
    if (call() != 1) throw std::runtime_error(ToUtf8(client.GetLstMsg().reason));
    return static_cast<double>(heapUse().peak) / static_cast<double>(kLargest);
}

}  // namespace

int main(int argc, char** argv)
{
    Report report(argc, argv);
    const Picture picture(kLargest);
    const LoopbackServer upload(kAccepted);
    const LoopbackServer download(std::string(kLargest, 'p'));
    CWapiClient client(FromUtf8(upload.url()));
    const CStringT cred = FromUtf8("cred");

    CStringT url;
    const double up = peakOf(client, [&] { return client.SetSpaceIcon(cred, FromUtf8("w"), picture.path(), url); });
    CStringT path;
    const double down = peakOf(client, [&] { return client.GetSpaceIcon(cred, FromUtf8(download.url()), path); });
    report.require(url == FromUtf8("kept"), "the reply was not read");
    report.require(fs::file_size(ToUtf8(path)) == kLargest, "the file is not whole");
    fs::remove(ToUtf8(path));

    report.atMost("peak heap of sending a picture of 64 MiB / the picture", up, kMost, "");
    report.atMost("peak heap of fetching a picture of 64 MiB / the picture", down, kMost, "");
    return report.status();
}
