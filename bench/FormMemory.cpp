// The memory that a large value of a form takes while it is encoded, against a string that only grows.
#include <cstddef>

#include "bench/HeapMeter.h"
#include "bench/Report.h"
#include "bench/SpaceListText.h"
#include "client/FormBody.h"
#include "pvutil/StringEx.h"

using namespace kzn::bench;

namespace {

constexpr std::size_t kBytes = 1'000'000;
constexpr std::size_t kSlack = 16'384;  // bytes that may be held for reasons that do not grow with the value

// The least that a text of this size costs that is appended to piece by piece.
void growBesides(const CStringT& text, CStringT& out)
{
    constexpr std::size_t kPiece = 1024;
    for (std::size_t at = 0; at < text.size(); at += kPiece) out.append(text, at, kPiece);
}

template <typename Call>
HeapUse heapOf(Call&& call)
{
    resetHeapUse();
    call();
    return heapUse();
}

void measureHeap(Report& report, const CStringT& value, const CStringT& encoded)
{
    wapi::FormBody built;
    const HeapUse body = heapOf([&] { built.encoded("", value); });
    CStringT text;
    const HeapUse string = heapOf([&] { growBesides(encoded, text); });
    const auto mega = [](std::size_t bytes) { return static_cast<double>(bytes) / 1e6; };

    report.atMost("peak heap of that body / of its text growing alone", mega(body.peak), mega(string.peak + kSlack),
                  "MB");
    report.atMost("allocations of that body / of its text growing alone", static_cast<double>(body.allocations),
                  static_cast<double>(string.allocations), "");
}

}  // namespace

int main(int argc, char** argv)
{
    Report report(argc, argv);
    const CStringT value = kzn::pvutil::stringex::FromUtf8(spaceListBytes(kBytes));
    const wapi::FormBody body = wapi::FormBody().encoded("", value);
    measureHeap(report, value, body);
    return report.status();
}
