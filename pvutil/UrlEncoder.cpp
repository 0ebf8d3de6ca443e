#include "pvutil/UrlEncoder.h"

#include <algorithm>

#include "pvutil/Utf.h"

namespace kzn::pvutil {

namespace {

struct Code {
    std::array<char, 3> units;
    unsigned char length;
};

constexpr bool isUnreserved(unsigned byte) noexcept
{
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') ||
           byte == '-' || byte == '_' || byte == '.' || byte == '~';
}

constexpr std::array<Code, 256> makeCodes() noexcept
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::array<Code, 256> codes{};
    for (unsigned byte = 0; byte < codes.size(); ++byte)
        codes[byte] = isUnreserved(byte) ? Code{{static_cast<char>(byte)}, 1}
                                         : Code{{'%', kDigits[byte >> 4], kDigits[byte & 0xF]}, 3};
    return codes;
}

constexpr std::array<Code, 256> kCodes = makeCodes();
constexpr unsigned kNoAscii = 0x80;
constexpr unsigned kEveryByte = 0x100;

// Encodes the bytes that `at` begins with, until a unit is none or the block is full. The writer's room always holds
// three units, so all three are written and only the used ones counted.
template <typename Text, typename Unit>
void putBytes(utf::BlockWriter<Text>& writer, const Unit*& at, const Unit* end, unsigned firstNoByte)
{
    auto* room = writer.room();
    for (const auto* const full = writer.full(); at != end && *at < firstNoByte && room < full; ++at) {
        const Code& code = kCodes[*at];
        for (std::size_t i = 0; i < code.units.size(); ++i)
            room[i] = static_cast<typename Text::value_type>(code.units[i]);
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
