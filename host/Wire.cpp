#include "host/Wire.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <utility>
#include <vector>

#include "host/Markup.h"
#include "host/Text.h"

namespace host {

namespace {

using Exchange = CWapiClient::Exchange;
using Fields = std::vector<std::pair<std::string, std::string>>;

std::string_view methodOf(const Exchange& exchange)
{
    return exchange.method == CWapiClient::METHOD_POST ? "POST" : "GET";
}

bool isMultipart(const Exchange& exchange)
{
    if (exchange.body.empty()) return false;
    return std::ranges::any_of(exchange.headers, [](const std::string& line) {
        return line.find("multipart/form-data") != std::string::npos;
    });
}

/// The form of a post, the query of a get.
std::string formOf(const Exchange& exchange)
{
    if (exchange.method == CWapiClient::METHOD_GET) {
        const std::size_t mark = std::min(exchange.url.find('?'), exchange.url.size() - 1);
        return std::string(exchange.url.substr(mark + 1));
    }
    std::string form;
    for (const std::string_view piece : exchange.body) form += piece;
    return form;
}

Fields fieldsIn(std::string_view form)
{
    Fields fields;
    while (!form.empty()) {
        const std::string_view piece = form.substr(0, form.find('&'));
        const std::size_t sign = std::min(piece.find('='), piece.size());
        fields.emplace_back(percentDecoded(piece.substr(0, sign)),
                            percentDecoded(piece.substr(std::min(sign + 1, piece.size()))));
        form.remove_prefix(std::min(form.size(), piece.size() + 1));
    }
    return fields;
}

/// The value of a field of a multipart form.
std::string partOf(std::string_view text, const std::string& name)
{
    const std::string head = "name=\"" + name + "\"\r\n\r\n";
    const std::size_t at = text.find(head);
    if (at == std::string_view::npos) return {};
    const std::size_t begin = at + head.size();
    return std::string(text.substr(begin, text.find("\r\n", begin) - begin));
}

/// The fields of a form of either kind; of a multipart one those that say what is asked.
Fields fieldsOf(const Exchange& exchange)
{
    if (!isMultipart(exchange)) return fieldsIn(formOf(exchange));
    const std::string_view head = exchange.body.front();
    return {{"cmd", partOf(head, "cmd")}, {"task", partOf(head, "task")}};
}

/// The value of the first field that goes by one of the names.
std::string valueIn(const Fields& fields, std::string_view name, std::string_view other)
{
    const auto found =
        std::ranges::find_if(fields, [&](const auto& field) { return field.first == name || field.first == other; });
    return found != fields.end() ? found->second : std::string();
}

/// What is asked of the service: the command, and its task or the type of its object.
std::string operationOf(const Exchange& exchange)
{
    const Fields fields = fieldsOf(exchange);
    const std::string command = valueIn(fields, "cmd", "cmd");
    if (command.empty()) return std::string(methodOf(exchange));
    const std::string object = valueIn(fields, "task", "type");
    return object.empty() ? command : command + " " + object;
}

/// What the service made of it, in its own word.
std::string resultOf(const Exchange& exchange, const Secrets& secrets)
{
    if (exchange.status < 0) return "no reply";
    constexpr std::string_view kResult = "<result>";
    constexpr std::size_t kLongest = 20;
    const std::size_t at = exchange.reply.find(kResult);
    if (at == std::string_view::npos) return "no result";
    const std::string_view rest = exchange.reply.substr(at + kResult.size());
    return secrets.masked(rest.substr(0, rest.find('<'))).substr(0, kLongest);
}

std::size_t bytesOf(const Exchange& exchange)
{
    std::size_t bytes = 0;
    for (const std::string_view piece : exchange.body) bytes += piece.size();
    return bytes;
}

/// The time of day in UTC.
std::string now()
{
    using namespace std::chrono;
    const auto today = system_clock::now().time_since_epoch() % hours(24);
    const auto digits = [](auto count, std::size_t width) {
        const std::string text = std::to_string(count);
        return std::string(width - std::min(width, text.size()), '0') + text;
    };
    return digits(duration_cast<hours>(today).count(), 2) + ":" +
           digits(duration_cast<minutes>(today % hours(1)).count(), 2) + ":" +
           digits(duration_cast<seconds>(today % minutes(1)).count(), 2) + "." +
           digits(duration_cast<milliseconds>(today % seconds(1)).count(), 3) + "Z";
}

std::string summaryOf(const Exchange& exchange, const Secrets& secrets)
{
    const std::string status = exchange.status < 0 ? "" : "HTTP " + std::to_string(exchange.status) + ", ";
    return now() + " " + secrets.masked(operationOf(exchange)) + ": " + std::to_string(bytesOf(exchange)) +
           " bytes out, " + std::to_string(exchange.reply.size()) + " in, " + status + resultOf(exchange, secrets) +
           ", " + std::to_string(exchange.milliseconds) + " ms";
}

/// Every line with something before it, on standard error, where no line can be more than a line.
void tell(std::string_view text, const std::string& before)
{
    const std::string lines = harmless(text, "\n");
    std::string all;
    for (std::size_t at = 0; at < lines.size();) {
        const std::size_t end = std::min(lines.find('\n', at), lines.size());
        all += before + lines.substr(at, end - at) + '\n';
        at = end + 1;
    }
    std::fputs(all.c_str(), stderr);
}

}  // namespace

Wire::Wire(CWapiClient& client, const Sight& sight) : client_(client), sight_(sight), secrets_(sight.secrets)
{
    client_.onExchange(
        [this](const Exchange& exchange) { return exchange.status == 0 ? begins(exchange) : (ends(exchange), true); });
}

Wire::~Wire()
{
    client_.onExchange({});
}

bool Wire::begins(const Exchange& exchange)
{
    replied_ = false;
    secrets_.add(ToUtf8(client_.getRootCred()));
    if (sight_.isDry) {
        if (request_.empty()) keep(exchange);
        return false;
    }
    if (stopped_) return false;
    if (sight_.verbosity > 1) tell(headOf(exchange) + "\n" + fieldsOf(exchange), "> ");
    return true;
}

void Wire::ends(const Exchange& exchange)
{
    replied_ = exchange.status > 0;
    status_ = exchange.status;
    isAnswer_ = exchange.reply.find("</result>") != std::string_view::npos;
    if (sight_.verbosity > 1 && replied_) {
        tell("HTTP " + std::to_string(exchange.status) + "\n" + readable(secrets_.masked(exchange.reply)), "< ");
    }
    if (sight_.verbosity > 0) tell(harmless(std::string_view(summaryOf(exchange, secrets_))), "pvwapi: ");
}

void Wire::keep(const Exchange& exchange)
{
    const std::string body = bodyOf(exchange);
    request_ = harmless(std::string_view(headOf(exchange)), "\n") + (body.empty() ? "" : "\n" + body + "\n");
    requestAsJson_ = {
        {"method", methodOf(exchange)}, {"url", addressOf(exchange)}, {"headers", Json::array()}, {"body", body}};
    for (const std::string& line : exchange.headers) requestAsJson_["headers"].push_back(secrets_.maskedHeader(line));
}

std::string Wire::addressOf(const Exchange& exchange) const
{
    return secrets_.maskedLine(exchange.url);
}

std::string Wire::headOf(const Exchange& exchange) const
{
    std::string head = std::string(methodOf(exchange)) + " " + addressOf(exchange) + "\n";
    for (const std::string& line : exchange.headers) head += secrets_.maskedHeader(line) + "\n";
    return head;
}

/// As it goes out; a picture is only measured.
std::string Wire::bodyOf(const Exchange& exchange) const
{
    if (!isMultipart(exchange)) {
        return exchange.body.empty() ? "" : harmless(std::string_view(secrets_.maskedForm(formOf(exchange))));
    }
    std::string body;
    for (std::size_t at = 0; at < exchange.body.size(); ++at) {
        const std::string_view piece = exchange.body[at];
        const bool isText = at == 0 || at + 1 == exchange.body.size();
        body += isText ? secrets_.maskedParts(piece) : "(" + std::to_string(piece.size()) + " bytes)";
    }
    std::erase(body, '\r');
    return harmless(std::string_view(body), "\n");
}

/// For the reader: decoded, and a field on a line.
std::string Wire::fieldsOf(const Exchange& exchange) const
{
    if (isMultipart(exchange)) return bodyOf(exchange);
    if (exchange.method == CWapiClient::METHOD_GET) return {};
    std::string text;
    for (const auto& [name, value] : fieldsIn(formOf(exchange))) {
        const std::string shown = secrets_.maskedField(name, value);
        const bool isXml = shown.starts_with('<');
        text.append(name).append(isXml ? " =\n" : " = ").append(isXml ? readable(shown) : shown).append("\n");
    }
    return text;
}

std::string Wire::readable(const std::string& text) const
{
    const std::optional<std::string> xml = indented(text);
    return xml ? *xml : text;
}

}  // namespace host
