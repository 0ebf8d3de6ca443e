// Building the body of a large value: its time against a table loop that knows the size, its memory against a string
// that only grows.
#include <array>
#include <cstddef>
#include <string_view>

#include "bench/HeapMeter.h"
#include "bench/Report.h"
#include "bench/SpaceListText.h"
#include "bench/Timing.h"
#include "client/FormBody.h"
#include "pvutil/StringEx.h"

using namespace kzn::bench;
using kzn::pvutil::stringex::CharT;

namespace {

constexpr std::size_t kBytes = 1'000'000;
constexpr int kPairs = 201;
constexpr std::size_t kSlack = 16'384;  // bytes that may be held for reasons that do not grow with the value

// What a byte becomes, 1 unit or 3.
struct Entry {
    std::array<CharT, 3> units{};
    std::size_t length = 0;
};

bool isKept(unsigned byte)
{
    return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9') ||
           std::string_view("-_.~").find(static_cast<char>(byte)) != std::string_view::npos;
}

std::array<Entry, 256> makeTable()
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    const auto unit = [](char c) { return static_cast<CharT>(c); };
    std::array<Entry, 256> table{};
    for (unsigned byte = 0; byte < table.size(); ++byte) {
        if (isKept(byte)) table[byte] = {{static_cast<CharT>(byte)}, 1};
        else table[byte] = {{unit('%'), unit(kDigits[byte >> 4]), unit(kDigits[byte & 15])}, 3};
    }
    return table;
}

// The peer. It is given more than the body has: the value's UTF-8 bytes ready made, and the exact size of the result.
void encodeByTable(std::string_view utf8, std::size_t size, CStringT& out)
{
    static const std::array<Entry, 256> table = makeTable();
    out.reserve(size);
    for (const char byte : utf8) {
        const Entry& entry = table[static_cast<unsigned char>(byte)];
        for (std::size_t i = 0; i < entry.length; ++i) out.push_back(entry.units[i]);
    }
}

// The least that a text of this size costs that is appended to piece by piece.
void growBesides(const CStringT& text, CStringT& out)
{
    constexpr std::size_t kPiece = 1024;
    for (std::size_t at = 0; at < text.size(); at += kPiece) out.append(text, at, kPiece);
}

std::string xmlValue(std::size_t bytes)
{
    std::string xml = spaceListReply(static_cast<int>(bytes / 500));
    while (xml.size() < bytes) xml += xml;
    while ((static_cast<unsigned char>(xml[bytes]) & 0xC0) == 0x80) ++bytes;
    xml.resize(bytes);
    return xml;
}

void measureTime(Report& report, const std::string& utf8, const CStringT& value, const CStringT& encoded)
{
    const auto body = [&] {
        wapi::FormBody built;
        const double seconds = secondsOf(threadTime, [&] { built.encoded("", value); });
        report.require(static_cast<const CStringT&>(built) == encoded, "the body's text is another");
        return seconds;
    };
    const auto loop = [&] {
        CStringT text;
        const double seconds = secondsOf(threadTime, [&] { encodeByTable(utf8, encoded.size(), text); });
        report.require(text == encoded, "the table loop's text is another");
        return seconds;
    };
    report.atMost("build the body of a 1 MB XML value / table loop", compare(report.pairs(kPairs), body, loop), 1.5);
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
    const std::string utf8 = xmlValue(kBytes);
    const CStringT value = kzn::pvutil::stringex::FromUtf8(utf8);
    const wapi::FormBody body = wapi::FormBody().encoded("", value);
    const CStringT& encoded = body;

    measureTime(report, utf8, value, encoded);
    measureHeap(report, value, encoded);
    return report.status();
}
