#include "service/tape/Scribe.h"

#include <algorithm>

#include "service/base/Text.h"
#include "service/tape/Headers.h"
#include "service/tape/Scan.h"

namespace service::tape {

namespace {

bool isCredential(std::string_view name)
{
    return lower(name) == "cred";
}

// A text of two bytes a letter hides what is in it.
bool isWide(std::string_view text)
{
    const auto first = [&text](std::string_view bytes) { return text.starts_with(bytes); };
    return first("\xFF\xFE") || first("\xFE\xFF") || first(std::string_view("<\0", 2)) ||
           first(std::string_view("\0<", 2));
}

// Whether secrets can be told in it: in no compressed reply, for one.
bool isReadable(const http::Response& response)
{
    const std::string coding = lower(headerOf(response.headers, "content-encoding"));
    if (!coding.empty() && coding != "identity") return false;
    const std::string type = lower(response.contentType);
    const bool isText = type.starts_with("text/") || type.find("json") != std::string::npos ||
                        placeOf(type) == Place::xml || placeOf(type) == Place::form;
    if (isText && response.body.find('\0') != std::string::npos) return false;
    return isPicture(type, response.body) || !isWide(response.body);
}

std::string boundaryOf(std::string_view contentType)
{
    constexpr std::string_view kName = "boundary=";
    const std::size_t at = lower(contentType).find(kName);
    if (!isMultipart(contentType) || at == std::string::npos) return {};
    const std::string_view rest = contentType.substr(at + kName.size());
    if (rest.starts_with('"')) return std::string(rest.substr(1, rest.find('"', 1) - 1));
    return std::string(trimmed(rest.substr(0, rest.find(';'))));
}

// What a tape's line can hold.
std::string printable(std::string_view contentType)
{
    std::string out(trimmed(contentType));
    std::erase_if(out, [](char c) { return c < ' ' || c > '~'; });
    return out;
}

Template asLiteral(std::string text)
{
    Template out;
    append(out, {Kind::literal, 0, std::move(text)});
    return out;
}

Exchange exchangeOf(const http::Request& request, const http::Response& response)
{
    Exchange exchange;
    exchange.method = request.method;
    exchange.target = asLiteral(request.target);
    exchange.body = asLiteral(request.body);
    if (!request.contentType.empty()) exchange.headers.push_back({"Content-Type", asLiteral(request.contentType)});
    exchange.status = response.status;
    exchange.contentType = printable(response.contentType);
    const std::string location = headerOf(response.headers, "location");
    if (!location.empty()) exchange.replyHeaders.push_back({"Location", asLiteral(location)});
    exchange.reply = asLiteral(response.body);
    return exchange;
}

// Puts an identifier's value back in its place.
void open(Template& text, int number, const std::string& value)
{
    Template out;
    for (Piece& piece : text) {
        if (piece.kind == Kind::id && piece.number == number) piece = {Kind::literal, 0, value};
        append(out, std::move(piece));
    }
    text = std::move(out);
}

}  // namespace

std::string Scribe::take(const http::Request& request, const http::Response& response)
{
    if (response.status < kLeastStatus || response.status > kMostStatus) {
        return "no tape can hold a reply with the status " + std::to_string(response.status);
    }
    if (!isReadable(response)) return "the secrets of its reply cannot be told, for it is compressed or the like";
    learnRequest(request);
    learnReply(response);
    mend();
    Exchange exchange = exchangeOf(request, response);
    mark(exchange.target, false);
    for (HeaderTemplate& header : exchange.headers) mark(header.value, false);
    mark(exchange.body, false);
    mark(exchange.reply, placeOf(response.contentType) == Place::xml);
    for (HeaderTemplate& header : exchange.replyHeaders) mark(header.value, false);
    if (const std::string boundary = boundaryOf(request.contentType); !boundary.empty()) {
        replace(exchange.headers.front().value, {boundary}, {Kind::boundary, 0, {}}, Beside::anything);
        replace(exchange.body, {boundary}, {Kind::boundary, 0, {}}, Beside::anything);
    }
    if (placeOf(response.contentType) == Place::xml) meet(response.body);
    exchanges_.push_back(std::move(exchange));
    texts_.push_back(textOf(exchanges_.back(), exchanges_.size()));
    return {};
}

std::string Scribe::text() const
{
    std::string text;
    for (const std::string& part : texts_) text += part;
    return text;
}

void Scribe::learnRequest(const http::Request& request)
{
    hideOfRequest(secretsOfAddress(request.target));
    askFor(request.target);
    hideOfRequest(secretsOfBody(request.contentType, request.body));
    askFor(request.body);
}

void Scribe::learnReply(const http::Response& response)
{
    if (!isPicture(response.contentType, response.body)) hideOfReply(secretsIn(response.body));
    hideOfReply(secretsOfAddress(headerOf(response.headers, "location")));
}

// A credential among them is one that no reply gave: the host had it before.
void Scribe::hideOfRequest(const std::vector<Found>& found)
{
    for (const Found& one : found) hide(Kind::secret, one);
}

void Scribe::hideOfReply(const std::vector<Found>& found)
{
    for (const Found& one : found) hide(isCredential(one.name) ? Kind::cred : Kind::secret, one);
}

void Scribe::hide(Kind kind, const Found& found)
{
    const auto& [name, spelled, value] = found;
    if (spelled.empty() || value.empty()) return;
    const auto known = std::ranges::find(hidden_, value, &Hidden::value);
    if (known != hidden_.end() && std::ranges::find(known->spellings, spelled) != known->spellings.end()) return;
    news_.push_back(spelled);
    if (known != hidden_.end()) return known->spellings.push_back(spelled);
    Hidden hidden{
        {kind, kind == Kind::cred ? ++credentials_ : ++secrets_, {}}, value, spellings(value), besideSecret(value)};
    if (std::ranges::find(hidden.spellings, spelled) == hidden.spellings.end()) hidden.spellings.push_back(spelled);
    news_.insert(news_.end(), hidden.spellings.begin(), hidden.spellings.end());
    forgetIdentifiersWith(hidden);
    hidden_.push_back(std::move(hidden));
    // One that holds another goes first.
    std::ranges::stable_sort(hidden_, [](const Hidden& a, const Hidden& b) { return a.value.size() > b.value.size(); });
}

// What was taken for an identifier is, or holds, a secret: its value must not stand there.
void Scribe::forgetIdentifiersWith(const Hidden& hidden)
{
    for (auto known = identifiers_.begin(); known != identifiers_.end();) {
        Template value = asLiteral(known->first);
        replace(value, hidden.spellings, hidden.piece, hidden.beside);
        if (value == asLiteral(known->first)) {
            ++known;
            continue;
        }
        for (Exchange& exchange : exchanges_) {
            for (Template* text : templatesOf(exchange)) open(*text, known->second, known->first);
        }
        known = identifiers_.erase(known);
    }
}

// An identifier that comes back in a request gets a number, and so does what the service made beforehand.
void Scribe::askFor(std::string_view text)
{
    for (const Token& token : tokensOf(text)) {
        if (!couldIdentify(token.text)) continue;
        const bool hidden = std::ranges::find(hidden_, token.text, &Hidden::value) != hidden_.end();
        if (!token.isTag && !hidden && met_.contains(token.text) && !identifiers_.contains(token.text)) {
            identifiers_.emplace(token.text, ++lastIdentifier_);
            news_.emplace_back(token.text);
        }
        asked_.emplace(token.text);
    }
}

void Scribe::meet(std::string_view reply)
{
    for (const Token& token : tokensOf(reply)) {
        if (!token.isTag && couldIdentify(token.text) && !asked_.contains(token.text)) met_.emplace(token.text);
    }
}

void Scribe::mark(Template& text, bool isReply)
{
    for (const Hidden& hidden : hidden_) replace(text, hidden.spellings, hidden.piece, hidden.beside);
    replace(text, server_, {Kind::server, 0, {}}, Beside::noAddress);
    markTokens(text, isReply);
}

void Scribe::markTokens(Template& text, bool isReply)
{
    Template out;
    for (Piece& old : text) {
        // A moment that comes back in a request is an identifier like any other.
        if (old.kind == Kind::time && identifiers_.contains(old.text)) old = identifier(old.text);
        if (old.kind == Kind::literal) appendMarked(out, old.text, isReply);
        else append(out, std::move(old));
    }
    text = std::move(out);
}

void Scribe::appendMarked(Template& out, const std::string& text, bool isReply)
{
    std::size_t from = 0;
    for (const Token& token : tokensOf(text)) {
        Piece piece = token.isTag ? Piece{} : pieceOf(token.text, isReply);
        if (piece.kind == Kind::literal) continue;
        append(out, {Kind::literal, 0, text.substr(from, token.at - from)});
        append(out, std::move(piece));
        from = token.at + token.text.size();
    }
    append(out, {Kind::literal, 0, text.substr(from)});
}

// What stands for a token: a literal where it stands for itself.
Piece Scribe::pieceOf(std::string_view token, bool isReply)
{
    if (identifiers_.contains(token)) return identifier(token);
    if (!isReply || asked_.contains(token)) return {};
    if (looksLikeTime(token)) return {Kind::time, 0, std::string(token)};
    if (!looksMade(token)) return {};
    identifiers_.emplace(token, ++lastIdentifier_);
    return identifier(token);
}

Piece Scribe::identifier(std::string_view token)
{
    const int number = identifiers_.find(token)->second;
    Piece piece{Kind::id, number, {}};
    if (written_.insert(number).second) piece.text = token;
    return piece;
}

bool Scribe::holdsNews(const Exchange& exchange) const
{
    const auto isNews = [this](const Piece& piece) {
        return std::ranges::any_of(news_, [&piece](const std::string& news) {
            return piece.kind == Kind::literal ? piece.text.find(news) != std::string::npos : piece.text == news;
        });
    };
    return std::ranges::any_of(templatesOf(exchange),
                               [&isNews](const Template* text) { return std::ranges::any_of(*text, isNews); });
}

// Looks through what is written already for what was not known then. Reading and writing all of it anew each time would
// make a host wait the longer the more it has done.
void Scribe::mend()
{
    for (std::size_t i = 0; i < exchanges_.size() && !news_.empty(); ++i) {
        if (!holdsNews(exchanges_[i])) continue;
        for (Template* text : templatesOf(exchanges_[i])) {
            for (const Hidden& hidden : hidden_) replace(*text, hidden.spellings, hidden.piece, hidden.beside);
            markTokens(*text, false);
        }
        texts_[i + 1] = textOf(exchanges_[i], i + 1);
    }
    news_.clear();
}

}  // namespace service::tape
