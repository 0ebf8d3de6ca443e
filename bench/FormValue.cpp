// Encoding values of a form, against one pass by a table into a string that has the room.
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "bench/Report.h"
#include "bench/SpaceListText.h"
#include "bench/Timing.h"
#include "client/FormBody.h"
#include "pvutil/StringEx.h"
#include "pvutil/UrlEncoder.h"
#include "pvutil/Utf.h"

using namespace kzn::bench;
using kzn::pvutil::stringex::CharT;

namespace {

constexpr std::string_view kCredential = "5f0c2f7a-6d3b-4c6e-9a55-1d2f3e4b5c6d:us0";  // of 40 units
constexpr std::size_t kUnits = 3'000;
constexpr std::size_t kBytes = 1'000'000;
constexpr int kPairs = 201;

// What a byte becomes, 1 unit or 3.
struct Entry {
    std::array<CharT, 3> units{};
    std::size_t length = 0;
};

constexpr bool isKept(unsigned byte)
{
    return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9') ||
           std::string_view("-_.~").find(static_cast<char>(byte)) != std::string_view::npos;
}

constexpr std::array<Entry, 256> makeTable()
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

constexpr std::array<Entry, 256> kTable = makeTable();

void put(CStringT& out, unsigned byte)
{
    const Entry& entry = kTable[byte];
    if (entry.length == 1) out.push_back(entry.units[0]);
    else out.append(entry.units.data(), entry.length);
}

// The peer: what one writes who reads the units once, and whose string has room for all that may come.
void encodeInOnePass(const CStringT& value, CStringT& out)
{
    using kzn::pvutil::utf::next;
    std::array<unsigned char, 4> bytes;
    for (auto at = value.data(), end = at + value.size(); at != end;) {
        if (*at < 0x80) {
            put(out, *at++);
            continue;
        }
        const std::size_t count = kzn::pvutil::utf::toUtf8(next(at, end), bytes);
        for (std::size_t i = 0; i < count; ++i) put(out, bytes[i]);
    }
}

// Both write into the same text, which has the room; a short value many times.
void measureEncoding(Report& report, const CStringT& value, double limit)
{
    const std::size_t times = 200'000 / value.size() + 1;
    CStringT text;
    text.reserve(3 * value.size());
    encodeInOnePass(value, text);
    const CStringT expected = text;
    const auto seconds = [&](auto encode) {
        const double taken = secondsOf(threadTime, [&] {
            for (std::size_t done = 0; done < times; ++done) {
                text.clear();
                encode(value, text);
            }
        });
        report.require(text == expected, "the encoded text is another");
        return taken;
    };
    const auto library = [](const CStringT& from, CStringT& to) { kzn::pvutil::URLEncoder::append(to, from); };
    report.atMost("encode " + std::to_string(value.size()) + " units / one pass into a string with room",
                  compare(
                      report.pairs(kPairs), [&] { return seconds(library); }, [&] { return seconds(encodeInOnePass); }),
                  limit);
}

void measureBody(Report& report, const CStringT& value, const CStringT& encoded)
{
    const auto body = [&] {
        wapi::FormBody built;
        const double seconds = secondsOf(threadTime, [&] { built.encoded("", value); });
        report.require(static_cast<const CStringT&>(built) == encoded, "the body's text is another");
        return seconds;
    };
    const auto onePass = [&] {
        CStringT text;
        const double seconds = secondsOf(threadTime, [&] {
            text.reserve(encoded.size());
            encodeInOnePass(value, text);
        });
        report.require(text == encoded, "the one pass' text is another");
        return seconds;
    };
    report.atMost("build the body of a 1 MB XML value / one pass into a string of its size",
                  compare(report.pairs(kPairs), body, onePass), 1.5);
}

}  // namespace

int main(int argc, char** argv)
{
    Report report(argc, argv);
    const CStringT value = kzn::pvutil::stringex::FromUtf8(spaceListBytes(kBytes));
    const wapi::FormBody body = wapi::FormBody().encoded("", value);
    const CStringT& encoded = body;

    measureEncoding(report, kzn::pvutil::stringex::FromUtf8(kCredential), 0.8);
    measureEncoding(report, value.substr(0, kUnits), 1.1);
    measureBody(report, value, encoded);
    return report.status();
}
