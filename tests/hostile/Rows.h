// Replies that nobody should send, and what a call makes of each.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "client/WapiClient.h"
#include "tests/support/CaptureServer.h"

namespace kzn::test {

/// What becomes of a call.
struct Outcome {
    enum class Kind {
        plain,      // what an ordinary reply of the same document gives
        senseless,  // a 0 without a reason: a reply came, and it names no result
        refused,    // a 0 with the reason "r"
        beyond,     // a 0 with the reason that a limit of the XML gives
        noReply,    // a 0 without a connection, for the reason `network`
        lost,       // the same, for any reason that a connection ends for
        either      // that, or what stood until then: a reset is not always told from an end
    };
    Kind kind = Kind::plain;
    CWapiClient::NETWORK_ERROR network = CWapiClient::NETWORK_NONE;
};

struct Row {
    std::string name;
    Script script;
    Outcome outcome;
    std::optional<Outcome> underWine;  // where Wine's HTTP makes something else of it
    bool isSilent = false;             // nothing ends it but the time without a byte
};

/// All of them, by their subject.
std::vector<Row> statusRows();
std::vector<Row> headRows();
std::vector<Row> bodyRows();
std::vector<Row> textRows();
std::vector<Row> endRows();
std::vector<Row> allRows();

// ---- What rows are made of ------------------------------------------------------------------------------------------

inline const std::string kSuccess = "<kznapi><response><result>SUCCESS</result></response></kznapi>";

inline Outcome plain()
{
    return {};
}
inline Outcome senseless()
{
    return {Outcome::Kind::senseless};
}
inline Outcome refused()
{
    return {Outcome::Kind::refused};
}
inline Outcome beyond()
{
    return {Outcome::Kind::beyond};
}
inline Outcome lost()
{
    return {Outcome::Kind::lost};
}
inline Outcome noReply(CWapiClient::NETWORK_ERROR why)
{
    return {Outcome::Kind::noReply, why};
}
inline Outcome notHttp()
{
    return noReply(CWapiClient::NETWORK_NOT_HTTP);
}
inline Outcome cutOff()
{
    return noReply(CWapiClient::NETWORK_CUT_OFF);
}
inline Outcome tooLarge()
{
    return noReply(CWapiClient::NETWORK_TOO_LARGE);
}
inline Outcome silence()
{
    return noReply(CWapiClient::NETWORK_SILENCE);
}

std::string repeated(const std::string& text, std::size_t times);
/// A whole reply with that first line, more head lines and the document that succeeds.
std::string replyWith(const std::string& statusLine, const std::string& lines = "");
/// One with a document of its own.
std::string replyOf(const std::string& document, const std::string& contentType = "text/xml; charset=utf-8");

Row sends(std::string name, std::string bytes, Outcome outcome, std::optional<Outcome> underWine = {});
/// The connection ends behind the bytes.
Row closes(std::string name, std::string bytes, Outcome outcome, std::optional<Outcome> underWine = {});
/// Nothing follows the bytes, and nothing ends.
Row stalls(std::string name, std::string bytes, Outcome outcome, std::optional<Outcome> underWine = {});

}  // namespace kzn::test
