#include "service/journal/Reading.h"

#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "log/Form.h"
#include "log/Mask.h"
#include "log/Operations.h"
#include "log/Outcome.h"
#include "service/journal/Secrets.h"
#include "service/journal/Shape.h"
#include "service/rules/Icons.h"

namespace service::journal {

namespace {

constexpr std::size_t kMostFields = 64;

bool isUpload(const http::Request& request)
{
    return request.contentType.starts_with("multipart/");
}

std::string_view formOf(const http::Request& request)
{
    return request.isPost() ? std::string_view(request.body) : http::queryOf(request.target);
}

// Nothing where it is no form: bytes that can hold anything, a secret too.
std::optional<logreader::Fields> fieldsOf(const Heard& heard)
{
    const std::string_view form = formOf(heard.request);
    logreader::Fields fields;
    if (isUpload(heard.request)) {
        for (const auto& [name, value] : heard.uploaded) fields.push_back({name, value});
    } else if (!form.empty()) {
        if (!logreader::looksLikeForm(form)) return std::nullopt;
        fields = logreader::fieldsOf(form);
    }
    return fields;
}

// The JSON of a list of pairs.
class PairList {
public:
    void add(std::string_view name, std::string_view value)
    {
        if (size_++ > 0) text_ += ',';
        text_.append("[").append(quoted(name)).append(",").append(quoted(value)).append("]");
    }
    void addLength(std::size_t bytes, const char* what)
    {
        add("", std::to_string(bytes) + " bytes that are no " + what);
    }
    std::size_t size() const { return size_; }
    std::string text() const { return "[" + text_ + "]"; }

private:
    std::string text_;
    std::size_t size_ = 0;
};

std::string leftOut(std::size_t bytes)
{
    return std::to_string(bytes) + " bytes that are left out";
}

std::string shownValue(const logreader::Field& field, Secrets& secrets)
{
    if (logreader::isSecretName(field.name)) return std::string(field.value.empty() ? "" : logreader::kMask);
    std::optional<std::string> shown = secrets.shown(field.value);
    return shown ? std::move(*shown) : leftOut(field.value.size());
}

PairList shownFields(const logreader::Fields& fields, Secrets& secrets)
{
    PairList list;
    for (const logreader::Field& field : fields) {
        if (list.size() == kMostFields) break;
        if (isPlainName(field.name)) list.add(field.name, shownValue(field, secrets));
        else list.addLength(field.name.size() + field.value.size(), "field");
    }
    return list;
}

std::string operationOf(const http::Request& request, const logreader::Fields& fields, Secrets& secrets)
{
    if (http::pathOf(request.target).starts_with(rules::kIconPath)) return "GetSpaceIcon";
    return fields.empty() ? std::string() : secrets.word(logreader::operationOf(fields));
}

// Whoever signs in has no session yet, but a name.
std::string userOf(const http::Response& response, const logreader::Fields& fields, Secrets& secrets)
{
    if (!response.user.empty() || logreader::valueOf(fields, "cmd") != "login") return response.user;
    return secrets.word(logreader::valueOf(fields, "username"));
}

// The service's own replies say first what became of the request: what follows need not be read for it.
std::string_view responseOf(std::string_view reply)
{
    constexpr std::string_view kEnd = "</response>";
    const std::size_t at = reply.find(kEnd);
    return at == std::string_view::npos ? reply : reply.substr(0, at + kEnd.size());
}

// What became of it is told where the reply itself is left out, too.
void readText(store::Exchange& exchange, const Heard& heard, Secrets& secrets)
{
    std::optional<std::string> shown = secrets.shown(heard.response.body);
    const logreader::Outcome outcome = logreader::outcomeOf(responseOf(shown ? *shown : heard.response.body));
    exchange.reply = shown ? std::move(*shown) : leftOut(heard.bytesIn);
    exchange.result = logreader::nameOf(outcome.kind);
    if (!outcome.reason.empty())
        exchange.reason = secrets.shown(outcome.reason).value_or(std::string(logreader::kMask));
    if (!outcome.exceptionID.empty()) exchange.exceptionID = secrets.word(outcome.exceptionID);
}

void readReply(store::Exchange& exchange, const Heard& heard, Secrets& secrets)
{
    if (heard.response.contentType.starts_with("text/")) return readText(exchange, heard, secrets);
    exchange.result = "SUCCESS";
    exchange.reply = heard.response.contentType;
}

// What became of it is said at the beginning of a reply.
void readHead(store::Exchange& exchange, const Heard& heard)
{
    const http::Response& response = heard.response;
    Secrets secrets{logreader::Fields()};
    exchange.path = secrets.word(http::pathOf(heard.request.target));
    exchange.operation = operationOf(heard.request, {}, secrets);
    exchange.user = response.user;
    PairList shown;
    if (heard.bytesOut > 0) shown.add("", leftOut(heard.bytesOut));
    exchange.fields = shown.text();
    exchange.reply = leftOut(heard.bytesIn);
    const bool isText = response.contentType.starts_with("text/");
    exchange.result = isText ? logreader::nameOf(logreader::outcomeOf(response.body).kind) : "SUCCESS";
}

// The reply comes before the fields: of what is searched for secrets it is the most telling.
void read(store::Exchange& exchange, const Heard& heard)
{
    if (heard.isHead) return readHead(exchange, heard);
    const std::optional<logreader::Fields> form = fieldsOf(heard);
    const logreader::Fields fields = form.value_or(logreader::Fields());
    Secrets secrets(fields);
    exchange.path = secrets.word(http::pathOf(heard.request.target));
    exchange.operation = operationOf(heard.request, fields, secrets);
    exchange.user = userOf(heard.response, fields, secrets);
    readReply(exchange, heard, secrets);
    PairList shown = shownFields(fields, secrets);
    if (!form) shown.addLength(formOf(heard.request).size(), "form");
    exchange.fields = shown.text();
}

}  // namespace

store::Exchange exchangeOf(const Heard& heard)
{
    store::Exchange exchange;
    exchange.number = heard.number;
    exchange.time = heard.time;
    exchange.microseconds = std::chrono::duration_cast<std::chrono::microseconds>(heard.took).count();
    exchange.method = heard.request.method;
    exchange.status = heard.response.status;
    exchange.bytesOut = heard.bytesOut;
    exchange.bytesIn = heard.bytesIn;
    exchange.fields = "[]";
    if (heard.response.fault) exchange.fault = faults::kindName(heard.response.fault->kind);
    try {
        read(exchange, heard);
    } catch (const std::exception& error) {
        std::clog << "exchange " << exchange.number << " cannot be read for the journal: " << error.what() << std::endl;
    }
    return exchange;
}

}  // namespace service::journal
