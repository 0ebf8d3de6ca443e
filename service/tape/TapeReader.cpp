#include <algorithm>
#include <functional>
#include <map>
#include <set>

#include "service/base/Text.h"
#include "service/tape/Escapes.h"
#include "service/tape/Tape.h"

namespace service::tape {

namespace {

struct Section {
    std::string_view name;
    std::string_view argument;
    std::vector<std::pair<std::size_t, std::string_view>> lines;  // each with its number
    std::size_t at = 0;
};

std::string_view withoutIndent(std::string_view line)
{
    return line.substr(std::min(line.find_first_not_of(' '), line.size()));
}

Section openSection(std::string_view line, std::size_t at)
{
    const std::size_t close = line.find(']');
    if (close == std::string_view::npos) throw TapeError(at, "a section's name ends in ]");
    return {line.substr(1, close - 1), withoutIndent(line.substr(close + 1)), {}, at};
}

std::string_view takeLine(std::string_view& text)
{
    std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

// What stands above the first section is the tape's title, and anybody's to write.
std::vector<Section> splitSections(std::string_view text)
{
    std::vector<Section> sections;
    for (std::size_t at = 1; !text.empty(); ++at) {
        const std::string_view line = takeLine(text);
        const std::string_view content = withoutIndent(line);
        if (line.starts_with('[')) sections.push_back(openSection(line, at));
        else if (!sections.empty() && !content.empty() && content.front() != '#') {
            sections.back().lines.emplace_back(at, content);
        }
    }
    return sections;
}

Template joined(const Section& section)
{
    Template text;
    for (const auto& [at, line] : section.lines) appendUnescaped(text, line, at);
    return text;
}

// Without what placeholders will stand for.
std::size_t lengthOf(const Template& text)
{
    std::size_t length = 0;
    for (const Piece& piece : text) length += piece.text.size();
    return length;
}

// Each form has a boundary of its own, and no reply is one.
void refuseBoundary(const Template& text, std::size_t line)
{
    const auto isBoundary = [](const Piece& piece) { return piece.kind == Kind::boundary; };
    if (std::ranges::any_of(text, isBoundary)) throw TapeError(line, "{boundary} stands in a request alone");
}

Template joinedReply(const Section& section)
{
    Template text;
    for (const auto& [at, line] : section.lines) {
        Template part;
        appendUnescaped(part, line, at);
        refuseBoundary(part, at);
        for (Piece& piece : part) append(text, std::move(piece));
    }
    return text;
}

std::vector<HeaderTemplate> headersOf(const Section& section)
{
    std::vector<HeaderTemplate> headers;
    for (const auto& [at, line] : section.lines) {
        const std::size_t colon = line.find(':');
        if (colon == std::string_view::npos || colon == 0) throw TapeError(at, "a header is \"Name: value\"");
        if (colon > kLongestHeader) throw TapeError(at, "this header's name is too long");
        Template value;
        appendUnescaped(value, withoutIndent(line.substr(colon + 1)), at);
        if (lengthOf(value) > kLongestHeader) throw TapeError(at, "this header is too long");
        headers.push_back({std::string(line.substr(0, colon)), std::move(value)});
    }
    return headers;
}

std::vector<HeaderTemplate> replyHeadersOf(const Section& section)
{
    std::vector<HeaderTemplate> headers = headersOf(section);
    for (std::size_t i = 0; i < headers.size(); ++i) refuseBoundary(headers[i].value, section.lines[i].first);
    return headers;
}

void readRequest(Exchange& exchange, const Section& section)
{
    if (section.argument != "POST" && section.argument != "GET")
        throw TapeError(section.at, "a request is a POST or a GET");
    exchange.method = section.argument;
    exchange.target = joined(section);
    if (exchange.target.empty()) throw TapeError(section.at, "a request has a target");
}

void readReply(Exchange& exchange, const Section& section)
{
    const std::string_view status = section.argument.substr(0, section.argument.find(' '));
    const auto number = wholeNumber(status.empty() ? "200" : status, kLeastStatus, kMostStatus);
    if (!number) throw TapeError(section.at, "no such status: " + inQuotes(status));
    exchange.status = static_cast<unsigned>(*number);
    exchange.contentType = trimmed(section.argument.substr(status.size()));
    if (section.argument.empty()) exchange.contentType = "text/xml";
    const auto isPlain = [](char c) { return c >= ' ' && c <= '~'; };
    if (!std::ranges::all_of(exchange.contentType, isPlain) || exchange.contentType.size() > kLongestHeader)
        throw TapeError(section.at, "this is no content type");
    exchange.reply = joinedReply(section);
}

using Reader = std::function<void(Exchange&, const Section&)>;

const std::map<std::string_view, Reader>& readers()
{
    static const std::map<std::string_view, Reader> kReaders{
        {"request", readRequest},
        {"headers", [](Exchange& exchange, const Section& section) { exchange.headers = headersOf(section); }},
        {"body", [](Exchange& exchange, const Section& section) { exchange.body = joined(section); }},
        {"reply", readReply},
        {"reply headers",
         [](Exchange& exchange, const Section& section) { exchange.replyHeaders = replyHeadersOf(section); }},
    };
    return kReaders;
}

// Puts the sections together. Whatever belongs to a request begins the next exchange where there is a reply already.
class Assembly {
public:
    void take(const Section& section)
    {
        const auto reader = readers().find(section.name);
        if (reader == readers().end()) throw TapeError(section.at, "no such section: " + inQuotes(section.name));
        if (seen_.contains("reply") && !section.name.starts_with("reply")) close();
        if (seen_.empty()) begin(section.at);
        if (!seen_.insert(section.name).second) throw TapeError(section.at, inQuotes(section.name) + " stands twice");
        reader->second(tape_.back(), section);
    }

    Tape finish()
    {
        if (tape_.empty()) throw TapeError("there is no exchange in it");
        close();
        return std::move(tape_);
    }

private:
    void begin(std::size_t line)
    {
        tape_.emplace_back();
        tape_.back().target = {{Kind::literal, 0, "/kznconnect/op.do"}};
        tape_.back().line = line;
    }

    void close()
    {
        if (!seen_.contains("reply")) throw TapeError(tape_.back().line, "this request has no reply");
        seen_.clear();
    }

    Tape tape_;
    std::set<std::string_view> seen_;
};

// An identifier's recorded value stands where it is first named, and is one and the same.
class IdentifierCheck {
public:
    void take(const Exchange& exchange)
    {
        for (const Template* text : templatesOf(exchange)) {
            for (const Piece& piece : *text) {
                if (piece.kind == Kind::id) take(piece, exchange.line);
            }
        }
    }

    void finish() const
    {
        for (const auto& [number, line] : used_) {
            if (!values_.contains(number)) {
                throw TapeError(line, "nowhere does {id " + std::to_string(number) + "} have a value: {id N = value}");
            }
        }
    }

private:
    void take(const Piece& piece, std::size_t line)
    {
        used_.emplace(piece.number, line);
        if (piece.text.empty()) return;
        const auto [known, isNew] = values_.emplace(piece.number, piece.text);
        if (!isNew && known->second != piece.text) throw TapeError(line, "{" + nameOf(piece) + "} has two values");
    }

    std::map<int, std::size_t> used_;
    std::map<int, std::string> values_;
};

}  // namespace

std::vector<Template*> templatesOf(Exchange& exchange)
{
    std::vector<Template*> texts{&exchange.target};
    for (HeaderTemplate& header : exchange.headers) texts.push_back(&header.value);
    texts.push_back(&exchange.body);
    texts.push_back(&exchange.reply);
    for (HeaderTemplate& header : exchange.replyHeaders) texts.push_back(&header.value);
    return texts;
}

std::vector<const Template*> templatesOf(const Exchange& exchange)
{
    std::vector<const Template*> texts{&exchange.target};
    for (const HeaderTemplate& header : exchange.headers) texts.push_back(&header.value);
    texts.push_back(&exchange.body);
    texts.push_back(&exchange.reply);
    for (const HeaderTemplate& header : exchange.replyHeaders) texts.push_back(&header.value);
    return texts;
}

Tape readTape(std::string_view text)
{
    Assembly assembly;
    for (const Section& section : splitSections(text)) assembly.take(section);
    Tape tape = assembly.finish();
    IdentifierCheck identifiers;
    for (const Exchange& exchange : tape) identifiers.take(exchange);
    identifiers.finish();
    return tape;
}

}  // namespace service::tape
