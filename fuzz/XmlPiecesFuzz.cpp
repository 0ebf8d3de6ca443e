// Any text whole and in pieces. The first byte of the input says how long the pieces are and what the rest is.
#include <algorithm>
#include <string>

#include "fuzz/Check.h"
#include "fuzz/XmlSelection.h"

namespace {

using fuzz::XmlSelection;
using kzn::pvutil::stringex::CStringView;

int parseInPieces(XmlSelection& handler, CStringView rest, std::size_t size)
{
    int well = 1;
    do {
        const CStringView piece = rest.substr(0, size);
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

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
try {
    std::string_view input = fuzz::bytes(data, size);
    const unsigned choice = fuzz::takeByte(input);
    const CStringT text = choice % 2 == 0 ? kzn::pvutil::stringex::FromUtf8(input) : fuzz::unitsOf(input);

    XmlSelection whole;
    const int well = whole.ParseXML(text);
    XmlSelection pieces;
    fuzz::check(parseInPieces(pieces, text, 1 + choice / 2 % 16) == well, "well-formed in pieces as well");
    checkSame(whole, pieces);
    fuzz::note(std::to_string(well));
    for (const CStringT& each : whole.texts) fuzz::note(each);
    for (const int event : whole.events) fuzz::note(std::to_string(event));

    // A handler that was left in the middle of something reads the next text as a new one does.
    XmlSelection used;
    used.ParsePiece(CStringView(text).substr(0, text.size() / 2), false);
    used.events.clear();
    used.textsAtEnds.clear();
    used.texts = used.again = {};
    fuzz::check(used.ParseXML(text) == well, "well-formed the second time as well");
    checkSame(whole, used);
    return 0;
} catch (const EXPAT_EX::XmlLimitPassed&) {
    return 0;  // there is nothing to compare
}
