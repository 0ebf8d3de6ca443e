#include "service/journal/Shape.h"

#include <algorithm>

#include "log/Xml.h"

namespace service::journal {

std::string textOf(const Json& json)
{
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// Most texts need nothing but the quotes, which takes no tree.
std::string quoted(std::string_view text)
{
    const auto isPlain = [](char c) { return c >= 0x20 && c < 0x7F && c != '"' && c != '\\'; };
    if (!std::ranges::all_of(text, isPlain)) return textOf(Json(text));
    std::string plain;
    plain.reserve(text.size() + 2);
    return plain.append("\"").append(text).append("\"");
}

std::string indented(std::string_view text)
{
    std::string out;
    logreader::writeIndented(text, [&out](std::string_view piece) { out += piece; });
    return out;
}

Json summaryOf(const store::Exchange& exchange)
{
    Json json;
    json["number"] = exchange.number;
    json["time"] = exchange.time;
    json["microseconds"] = exchange.microseconds;
    json["user"] = exchange.user;
    json["operation"] = exchange.operation;
    json["result"] = exchange.result;
    json["reason"] = exchange.reason;
    json["exceptionID"] = exchange.exceptionID;
    json["fault"] = exchange.fault;
    json["status"] = exchange.status;
    json["bytesOut"] = exchange.bytesOut;
    json["bytesIn"] = exchange.bytesIn;
    return json;
}

Json detailOf(const store::Exchange& exchange)
{
    Json json = summaryOf(exchange);
    json["method"] = exchange.method;
    json["path"] = exchange.path;
    Json fields = Json::array();
    for (const Json& pair : Json::parse(exchange.fields)) {
        fields.push_back(Json{{"name", pair.at(0)}, {"value", indented(pair.at(1).get<std::string>())}});
    }
    json["fields"] = std::move(fields);
    json["reply"] = indented(exchange.reply);
    return json;
}

std::string eventText(const store::Exchange& exchange)
{
    return "event: exchange\nid: " + std::to_string(exchange.number) + "\ndata: " + textOf(summaryOf(exchange)) +
           "\n\n";
}

}  // namespace service::journal
