#include "pvutil/UrlEncoder.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "pvutil/Utf.h"

namespace kzn::pvutil {

namespace {

// The units of a byte, and behind them how many they are: one store writes all of it, and what is too much of that is
// written over.
template <typename Unit>
struct Code {
    std::array<Unit, 3> units;
    Unit length;
};

constexpr bool isUnreserved(unsigned byte) noexcept
{
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') ||
           byte == '-' || byte == '_' || byte == '.' || byte == '~';
}

template <typename Unit>
constexpr std::array<Code<Unit>, 256> makeCodes() noexcept
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    const auto unit = [](auto value) { return static_cast<Unit>(value); };
    std::array<Code<Unit>, 256> codes{};
    for (unsigned byte = 0; byte < codes.size(); ++byte)
        codes[byte] = isUnreserved(byte)
                          ? Code<Unit>{{unit(byte)}, 1}
                          : Code<Unit>{{unit('%'), unit(kDigits[byte >> 4]), unit(kDigits[byte & 0xF])}, 3};
    return codes;
}

template <typename Unit>
constexpr std::array<Code<Unit>, 256> kCodes = makeCodes<Unit>();

constexpr unsigned kNoAscii = 0x80;
constexpr unsigned kEveryByte = 0x100;

// Encodes the bytes that `at` begins with, until a unit is none or the block is full.
template <typename Text, typename Unit>
void putBytes(utf::BlockWriter<Text>& writer, const Unit*& at, const Unit* end, unsigned firstNoByte)
{
    using Out = typename Text::value_type;
    Out* room = writer.room();
    const auto* const until = at + std::min(end - at, (writer.full() - room + 2) / 3);
    for (; at != until && *at < firstNoByte; ++at) {
        const Code<Out>& code = kCodes<Out>[*at];
        static_assert(sizeof code == utf::BlockWriter<Text>::kReserve * sizeof(Out));
        std::memcpy(room, &code, sizeof code);
        room += code.length;
    }
    writer.usedTo(room);
}

template <typename Text>
void encodeBytes(Text& out, const unsigned char* at, std::size_t count)
{
    utf::BlockWriter writer(out);
    for (const auto* const end = at + count; at != end;) putBytes(writer, at, end, kEveryByte);
    writer.flush();
}

const unsigned char* bytesOf(std::string_view text) noexcept
{
    return reinterpret_cast<const unsigned char*>(text.data());
}

}  // namespace

std::string URLEncoder::EncodeA(std::string_view bytes)
{
    std::string encoded;
    encodeBytes(encoded, bytesOf(bytes), bytes.size());
    return encoded;
}

void URLEncoder::append(stringex::CStringT& body, std::string_view ascii)
{
    encodeBytes(body, bytesOf(ascii), ascii.size());
}

void URLEncoder::append(stringex::CStringT& body, const stringex::CStringT& text)
{
    utf::BlockWriter writer(body);
    std::array<unsigned char, 4> bytes;
    for (auto at = text.data(), end = at + text.size(); at != end;) {
        putBytes(writer, at, end, kNoAscii);
        if (at == end || *at < kNoAscii) continue;  // the block was full

        const unsigned char* first = bytes.data();
        for (const auto* const last = first + utf::toUtf8(utf::next(at, end), bytes); first != last;)
            putBytes(writer, first, last, kEveryByte);
    }
    writer.flush();
}

}  // namespace kzn::pvutil
