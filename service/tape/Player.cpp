#include "service/tape/Player.h"

#include <algorithm>
#include <stdexcept>
#include <tuple>
#include <utility>

#include "service/base/Clock.h"
#include "service/base/Refusal.h"
#include "service/base/Secret.h"
#include "service/tape/Difference.h"
#include "service/tape/Headers.h"
#include "service/tape/Secrets.h"

namespace service::tape {

namespace {

std::string headerIn(const http::Request& request, const std::string& name)
{
    return isSameName(name, "Content-Type") ? request.contentType : headerOf(request.headers, name);
}

std::function<std::string(const Bindings&)> saying(const std::string& text)
{
    return [text](const Bindings&) { return text; };
}

// Why an exchange cannot be played yet; empty where it can.
std::string missingIn(const Exchange& exchange, const Bindings& bindings)
{
    const auto isLater = [&bindings](const Piece& piece) {
        return piece.kind == Kind::cred && bindings.find(piece) == nullptr;
    };
    std::string missing;
    for (const Template* text : {&exchange.target, &exchange.body}) {
        const auto later = std::ranges::find_if(*text, isLater);
        if (later != text->end()) missing = "no reply has given its {" + nameOf(*later) + "} yet";
    }
    return missing;
}

}  // namespace

Player::Player(Tape tape) : tape_(std::move(tape)), playedAt_(tape_.size())
{
    for (const Exchange& exchange : tape_) {
        for (const Template* text : templatesOf(exchange)) bindRecorded(*text);
    }
}

void Player::bindRecorded(const Template& text)
{
    for (const Piece& piece : text) {
        if (piece.kind == Kind::id && !piece.text.empty()) bindings_.bind(piece, piece.text);
    }
}

std::size_t Player::played() const
{
    return static_cast<std::size_t>(std::ranges::count_if(playedAt_, [](std::size_t at) { return at != 0; }));
}

http::Response Player::play(const http::Request& request, const std::string& server)
{
    bindings_.bind({Kind::server, 0, {}}, server);
    std::string which = "this request";
    try {
        const std::optional<std::size_t> chosen = choose(request);
        if (!chosen) return refuse(request);
        which = "exchange " + std::to_string(*chosen + 1) + " of the tape (line " +
                std::to_string(tape_[*chosen].line) + ")";
        playedAt_[*chosen] = ++now_;
        return reply(tape_[*chosen]);
    } catch (const std::exception& error) {
        ++refused_;
        return http::refusal(500, which + " cannot be played: " + error.what(), exceptionid::kInternal);
    }
}

std::optional<std::size_t> Player::choose(const http::Request& request)
{
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < tape_.size(); ++i) order.push_back(i);
    // What was not played comes first, as it stands; then what was played last.
    std::ranges::stable_sort(order, [this](std::size_t a, std::size_t b) {
        const bool isNew = playedAt_[a] == 0;
        return isNew != (playedAt_[b] == 0) ? isNew : playedAt_[a] > playedAt_[b];
    });
    for (const std::size_t i : order) {
        Bindings trial = bindings_.trial();
        if (compare(tape_[i], request, trial).difference) continue;
        bindings_.adopt(std::move(trial));
        return i;
    }
    return std::nullopt;
}

Player::Likeness Player::compare(const Exchange& exchange, const http::Request& request, Bindings& bindings) const
{
    if (exchange.method != request.method) return {0, 0, saying("it is a " + exchange.method)};
    const std::string missing = missingIn(exchange, bindings);
    const Fit target = fit(exchange.target, request.target, Place::form, bindings);
    if (!target.fits) {
        return {1, target.at, [target, &request](const Bindings& known) {
                    return differenceText("its target", target, request.target, secretsOfAddress(request.target),
                                          known);
                }};
    }
    for (const HeaderTemplate& header : exchange.headers) {
        const std::string value = headerIn(request, header.name);
        const Fit found = fit(header.value, value, Place::plain, bindings);
        if (found.fits) continue;
        return {2, found.at, [found, value, &header](const Bindings& known) {
                    return differenceText("its header " + header.name, found, value,
                                          secretsOfHeader(header.name, value), known);
                }};
    }
    const Fit body = fit(exchange.body, request.body, placeOf(request.contentType), bindings);
    if (body.fits) return {3, body.at, missing.empty() ? nullptr : saying(missing)};
    return {3, body.at, [body, &request](const Bindings& known) {
                return differenceText("its body", body, request.body, secretsOfBody(request.contentType, request.body),
                                      known);
            }};
}

// What the service would make anew is new here, too.
void Player::bindFresh(const Template& text)
{
    for (const Piece& piece : text) {
        const bool isSecret = piece.kind == Kind::cred || piece.kind == Kind::secret;
        if (isSecret && bindings_.find(piece) == nullptr) bindings_.bind(piece, newCredential());
    }
}

http::Response Player::reply(const Exchange& exchange)
{
    bindings_.forget({Kind::boundary, 0, {}});  // each form has its own
    bindings_.bind({Kind::time, 0, {}}, timeText(Clock().now()));
    http::Response response;
    response.status = exchange.status;
    response.contentType = exchange.contentType;
    bindFresh(exchange.reply);
    response.body = rendered(exchange.reply, placeOf(exchange.contentType), bindings_);
    for (const HeaderTemplate& header : exchange.replyHeaders) {
        bindFresh(header.value);
        std::string value = rendered(header.value, Place::plain, bindings_);
        if (value.size() > kLongestHeader) throw std::length_error("its header " + header.name + " is too long");
        response.headers.emplace_back(header.name, std::move(value));
    }
    return response;
}

http::Response Player::refuse(const http::Request& request)
{
    Likeness nearest{-1, 0, {}};
    std::size_t which = 0;
    for (std::size_t i = 0; i < tape_.size(); ++i) {
        Bindings trial = bindings_.trial();
        Likeness likeness = compare(tape_[i], request, trial);
        if (std::tie(likeness.parts, likeness.bytes) <= std::tie(nearest.parts, nearest.bytes)) continue;
        nearest = std::move(likeness);
        which = i;
    }
    const std::string reason = "no exchange of the tape fits this request; the nearest is exchange " +
                               std::to_string(which + 1) + " (line " + std::to_string(tape_[which].line) +
                               "): " + nearest.difference(bindings_);
    ++refused_;
    return http::refusal(404, reason, exceptionid::kNotOnTape);
}

}  // namespace service::tape
