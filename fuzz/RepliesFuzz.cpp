// Every reply parser, with the same bytes whole and in pieces. The first two bytes of the input say which one and how
// long the pieces are.
#include <array>
#include <string>

#include "access/SpaceListReply.h"
#include "client/CommonResponse.h"
#include "fuzz/Check.h"

namespace {

void checkOutcome(const CXMLWapiCommonResponse& whole, const CXMLWapiCommonResponse& pieces)
{
    fuzz::check(whole.result == pieces.result, "the same result");
    fuzz::check(whole.reason == pieces.reason, "the same reason");
    fuzz::check(whole.exceptionID == pieces.exceptionID, "the same exception identifier");
    fuzz::check(whole.messages == pieces.messages, "the same messages");
    fuzz::check(whole.succeeded() == pieces.succeeded(), "the same outcome");
}

template <typename Reply>
void parseAs(std::string_view text, std::size_t size)
{
    Reply whole;
    const int well = whole.ParseUtf8(text);
    Reply pieces;
    for (std::size_t at = 0; at < text.size(); at += size) pieces.ParsePiece(text.substr(at, size), false);
    const int wellInPieces = pieces.ParsePiece({}, true);
    fuzz::check(well == wellInPieces, "well-formed in pieces as well");
    checkOutcome(whole, pieces);
    for (const CStringT& each : {whole.result, whole.reason, whole.exceptionID, whole.messages}) fuzz::note(each);
    fuzz::note(std::to_string(well) + std::to_string(whole.succeeded()));
}

// One line a parser; the order is part of the corpus, so new ones go to the end.
constexpr std::array kParsers = {
    &parseAs<CXMLWapiCommonResponse>,
    &parseAs<CXMLWapiMessage>,
    &parseAs<wapi::list_space_library_resp>,
};

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
try {
    std::string_view input = fuzz::bytes(data, size);
    const unsigned parser = fuzz::takeByte(input);
    const unsigned pieces = fuzz::takeByte(input);
    kParsers[parser % kParsers.size()](input, 1 + pieces % 64);
    return 0;
} catch (const EXPAT_EX::XmlLimitPassed&) {
    return 0;  // there is nothing to compare
}
