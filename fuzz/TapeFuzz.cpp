// Tapes that anybody may have written, and exchanges that anybody may have had. The input is a tape, a request's body
// and a reply's, each from the next by a line "===".
#include <algorithm>
#include <string>

#include "fuzz/Check.h"
#include "service/tape/Player.h"
#include "service/tape/Scribe.h"
#include "service/tape/Verifier.h"

namespace {

using namespace service::tape;
using service::http::Request;
using service::http::Response;

constexpr const char* kServer = "http://kzn.example:8420";
constexpr const char* kSecret = "s3cret-w0rd";

std::string takePart(std::string_view& input)
{
    constexpr std::string_view kLine = "\n===\n";
    const std::size_t end = std::min(input.find(kLine), input.size());
    const std::string part(input.substr(0, end));
    input.remove_prefix(std::min(end + kLine.size(), input.size()));
    return part;
}

Request post(std::string body)
{
    return {"POST", "/kznconnect/op.do", "application/x-www-form-urlencoded", std::move(body)};
}

/// What was read is written so that it is read again as the same.
void checkText(const Tape& tape)
{
    for (const Exchange& exchange : tape) {
        // An identifier's value may stand in another exchange.
        Tape one{exchange};
        for (Template* text : {&one[0].target, &one[0].body, &one[0].reply})
            for (Piece& piece : *text)
                if (piece.kind == Kind::id && piece.text.empty()) piece = {Kind::any, 0, {}};
        for (auto* headers : {&one[0].headers, &one[0].replyHeaders}) headers->clear();
        const std::string text = textOf(one[0], 1);
        const Tape again = readTape(text);
        fuzz::check(again.size() == 1 && textOf(again[0], 1) == text, "a written exchange is read as it was");
        fuzz::check(again[0].body == one[0].body && again[0].reply == one[0].reply, "no byte of it is another");
    }
}

void checkPlay(const Tape& tape, const std::string& body, const std::string& reply)
{
    Player player(tape);
    for (int times = 0; times < 2; ++times) player.play(post(body), kServer);
    Verifier verifier(kServer, {kSecret}, [&](const Request&) { return Response{200, "text/xml", reply}; });
    for (const Exchange& exchange : tape) verifier.check(exchange);
}

/// Whatever is recorded can be read and played, and holds no secret.
void checkRecording(const std::string& body, const std::string& reply)
{
    Scribe scribe({kServer});
    const Response response{200, "text/xml", reply};
    scribe.take(post("cmd=login&password=s3cret-w0rd"), {200, "text/xml", "<a/>"});
    if (!scribe.take(post(body), response).empty()) return;
    const std::string text = scribe.text();
    fuzz::check(text.find(kSecret) == std::string::npos, "a secret never stands on a tape");
    Player player(readTape(text));
    player.play(post("cmd=login&password=s3cret-w0rd"), kServer);
    const Response played = player.play(post(body), kServer);
    const bool hides = text.find("{cred") != std::string::npos ||
                       text.find("{secret", text.find("exchange 2")) < text.size() ||
                       text.find("{server") != std::string::npos;
    if (!hides) fuzz::check(played.body == reply, "a recording is played as it was");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string_view input = fuzz::bytes(data, size);
    const std::string tapeText = takePart(input);
    const std::string body = takePart(input);
    const std::string reply = takePart(input);
    try {
        const Tape tape = readTape(tapeText);
        checkText(tape);
        checkPlay(tape, body, reply);
    } catch (const TapeError&) {
        // Most of what is tried is no tape.
    }
    checkRecording(body, reply);
    return 0;
}
