#include "service/tape/Verifier.h"

#include <algorithm>
#include <set>
#include <stdexcept>
#include <utility>

#include "service/base/Clock.h"
#include "service/tape/Difference.h"
#include "service/tape/Escapes.h"
#include "service/tape/Headers.h"
#include "service/tape/Secrets.h"

namespace service::tape {

namespace {

const Piece kBoundary{Kind::boundary, 0, {}};

// One that does not stand in the form.
std::string newBoundary(const Template& body)
{
    std::string boundary = "------------------------pvwapi";
    const auto standsIn = [&boundary](const Piece& piece) { return piece.text.find(boundary) != std::string::npos; };
    while (std::ranges::any_of(body, standsIn)) boundary += "0";
    return boundary;
}

void gather(std::set<int>& numbers, const Template& text)
{
    for (const Piece& piece : text) {
        if (piece.kind == Kind::secret) numbers.insert(piece.number);
    }
}

}  // namespace

Verifier::Verifier(const std::string& server, const std::vector<std::string>& secrets, Ask ask) : ask_(std::move(ask))
{
    bindings_.bind({Kind::server, 0, {}}, server);
    bindings_.bind({Kind::time, 0, {}}, timeText(Clock().now()));
    for (std::size_t i = 0; i < secrets.size(); ++i) {
        bindings_.bind({Kind::secret, static_cast<int>(i) + 1, {}}, secrets[i]);
    }
}

std::string Verifier::check(const Exchange& exchange)
{
    http::Request request;
    try {
        request = requestOf(exchange);
    } catch (const std::out_of_range& missing) {
        return std::string("its request needs {") + missing.what() + "}, which no reply has given";
    }
    return compare(exchange, ask_(request));
}

http::Request Verifier::requestOf(const Exchange& exchange)
{
    bindings_.bind(kBoundary, newBoundary(exchange.body));
    http::Request request;
    request.method = exchange.method;
    request.target = rendered(exchange.target, Place::form, bindings_);
    for (const HeaderTemplate& header : exchange.headers) {
        std::string value = rendered(header.value, Place::plain, bindings_);
        if (isSameName(header.name, "Content-Type")) request.contentType = value;
        request.headers.emplace_back(header.name, std::move(value));
    }
    request.body = rendered(exchange.body, placeOf(request.contentType), bindings_);
    return request;
}

// The body is looked at whatever else differs, for the identifiers that later requests need.
std::string Verifier::compare(const Exchange& exchange, const http::Response& response)
{
    const Fit body = fit(exchange.reply, response.body, placeOf(exchange.contentType), bindings_);
    if (response.status != exchange.status) {
        return "its status is " + std::to_string(exchange.status) + ", and not " + std::to_string(response.status);
    }
    if (response.contentType != exchange.contentType) {
        return "its content type is \"" + exchange.contentType + "\", and not \"" + escaped(response.contentType) +
               "\"";
    }
    if (!body.fits) return differenceText("its reply", body, response.body, secretsIn(response.body), bindings_);
    for (const HeaderTemplate& header : exchange.replyHeaders) {
        const std::string value = headerOf(response.headers, header.name);
        const Fit found = fit(header.value, value, Place::plain, bindings_);
        if (found.fits) continue;
        return differenceText("its header " + header.name, found, value, secretsOfHeader(header.name, value),
                              bindings_);
    }
    return {};
}

int secretsOf(const Tape& tape)
{
    std::set<int> given;
    int most = 0;
    for (const Exchange& exchange : tape) {
        std::set<int> asked;
        gather(asked, exchange.target);
        gather(asked, exchange.body);
        for (const HeaderTemplate& header : exchange.headers) gather(asked, header.value);
        for (const int number : asked) {
            if (!given.contains(number)) most = std::max(most, number);
        }
        gather(given, exchange.reply);
    }
    return most;
}

}  // namespace service::tape
