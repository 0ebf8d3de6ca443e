#include "log/Calls.h"
#include "log/Mask.h"
#include "service/control/Handlers.h"
#include "service/journal/Shape.h"

namespace service::control {

namespace {

constexpr std::size_t kMostBytes = std::size_t{64} * 1024 * 1024;
constexpr std::size_t kMostCalls = 20'000;

std::string replyOf(const logreader::Call& call, const std::vector<std::string>& secrets)
{
    return call.reply ? journal::indented(logreader::masked(call.reply->text, secrets)) : std::string();
}

// In the form of the journal's exchanges, as far as a log knows of it.
Json callJson(const logreader::Call& call)
{
    const std::vector<std::string> secrets = logreader::secretsOf(call.fields);
    Json json;
    json["number"] = call.number;
    json["time"] = call.time;
    json["process"] = call.pid;
    json["thread"] = call.tid;
    json["operation"] = logreader::masked(call.operation, secrets);
    json["result"] = logreader::nameOf(call.outcome.kind);
    json["reason"] = logreader::masked(call.outcome.reason, secrets);
    json["exceptionID"] = logreader::masked(call.outcome.exceptionID, secrets);
    json["bytesOut"] = call.request ? Json(call.request->bytes) : Json();
    json["bytesIn"] = call.reply ? Json(call.reply->bytes) : Json();
    Json fields = Json::array();
    for (const logreader::Field& field : logreader::masked(call.fields)) {
        fields.push_back(Json{{"name", field.name}, {"value", journal::indented(field.value)}});
    }
    json["fields"] = std::move(fields);
    json["reply"] = replyOf(call, secrets);
    return json;
}

}  // namespace

// A log of the library, which a person has at hand: what is sent is read and forgotten.
Json readLog(Desk& /*desk*/, const Call& call)
{
    if (call.text.data() == nullptr) throw ControlError(400, "the log has to be sent as text/plain");
    if (call.text.size() > kMostBytes) throw ControlError(413, "a log can have 64 MiB; send the end of it");
    Json list = Json::array();
    std::size_t left = 0;
    logreader::CallReader reader([&](logreader::Call&& found) {
        if (list.size() == kMostCalls) {
            ++left;
        } else {
            list.push_back(callJson(found));
        }
    });
    reader.feed(call.text);
    reader.endFile();
    reader.end();
    return Json{{"exchanges", std::move(list)}, {"left", left}};
}

}  // namespace service::control
