// Any text whole, and any bytes in pieces. The first byte of the input says how long the pieces are and what the rest
// is.
#include <algorithm>
#include <string>

#include "fuzz/Check.h"
#include "fuzz/XmlSelection.h"

namespace {

using fuzz::XmlSelection;

int parseInPieces(XmlSelection& handler, std::string_view rest, std::size_t size)
{
    int well = 1;
    do {
        const std::string_view piece = rest.substr(0, size);
        rest.remove_prefix(piece.size());
        well = handler.ParsePiece(piece, rest.empty()) != 0 ? well : 0;
    } while (!rest.empty());
    return well;
}

void checkSame(const XmlSelection& left, const XmlSelection& right)
{
    fuzz::check(left.texts == right.texts, "the same texts");
    fuzz::check(left.texts == left.again, "every selector of a path");
    fuzz::check(left.events == right.events, "the same events");
    fuzz::check(left.textsAtEnds == right.textsAtEnds, "the same texts at each end");
}

void checkPieces(const XmlSelection& whole, int well, std::string_view bytes, std::size_t size)
{
    XmlSelection pieces;
    fuzz::check(parseInPieces(pieces, bytes, size) == well, "well-formed in pieces as well");
    checkSame(whole, pieces);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
try {
    std::string_view input = fuzz::bytes(data, size);
    const unsigned choice = fuzz::takeByte(input);
    const bool isBytes = choice % 2 == 0;

    XmlSelection whole;
    const int well = isBytes ? whole.ParseUtf8(input) : whole.ParseXML(fuzz::unitsOf(input));
    if (isBytes) checkPieces(whole, well, input, 1 + choice / 2 % 16);
    fuzz::note(std::to_string(well));
    for (const CStringT& each : whole.texts) fuzz::note(each);
    for (const int event : whole.events) fuzz::note(std::to_string(event));

    // Bytes that are UTF-8 and their text are the same.
    const CStringT text = isBytes ? kzn::pvutil::stringex::FromUtf8(input) : fuzz::unitsOf(input);
    const std::string utf8 = kzn::pvutil::stringex::ToUtf8(text);
    if (isBytes && utf8 != input) return 0;

    // A handler that was left in the middle of something reads the next text as a new one does.
    XmlSelection used;
    used.ParsePiece(std::string_view(utf8).substr(0, utf8.size() / 2), false);
    used.events.clear();
    used.textsAtEnds.clear();
    used.texts = used.again = {};
    fuzz::check(used.ParseXML(text) == well, "well-formed the second time as well");
    checkSame(whole, used);
    return 0;
} catch (const EXPAT_EX::XmlLimitPassed&) {
    return 0;  // there is nothing to compare
}
