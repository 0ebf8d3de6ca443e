#include "log/Report.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "log/Mask.h"
#include "log/Text.h"
#include "log/Xml.h"

namespace logreader {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kNumberColumns = 5;
constexpr std::size_t kOperationColumns = 24;
constexpr std::size_t kLongestOperation = 60;
constexpr std::size_t kResultColumns = 9;
constexpr std::size_t kBytesColumns = 9;
constexpr std::string_view kFieldIndent = "        ";
constexpr std::string_view kXmlIndent = "            ";

/// A call as it may be shown.
class Shown {
public:
    Shown(const Call& call, Secrets secrets)
        : call_(call),
          isMasked_(secrets == Secrets::masked),
          secrets_(isMasked_ ? secretsOf(call.fields) : std::vector<std::string>())
    {
    }

    std::string text(std::string_view text) const { return isMasked_ ? masked(text, secrets_) : std::string(text); }
    std::string operation() const { return fitted(harmless(text(call_.operation)), kLongestOperation); }
    Fields fields() const { return isMasked_ ? masked(call_.fields) : call_.fields; }

private:
    const Call& call_;
    bool isMasked_;
    std::vector<std::string> secrets_;
};

std::string rightAligned(std::string text, std::size_t columns)
{
    return text.insert(0, columns - std::min(columns, text.size()), ' ');
}

std::string bytesOf(const std::optional<Entry>& entry)
{
    return rightAligned(entry ? std::to_string(entry->bytes) : "-", kBytesColumns);
}

std::string leftAligned(std::string text, std::size_t columns)
{
    return text.append(columns - std::min(columns, text.size()), ' ');
}

/// Why a call has failed, behind a gap; nothing where that is not known.
std::string reasonOf(const Call& call, const Shown& shown)
{
    if (call.outcome.kind != Outcome::Kind::failure) return {};
    std::string reason;
    if (!call.outcome.reason.empty()) reason.append("  ").append(shown.text(call.outcome.reason));
    if (!call.outcome.exceptionID.empty())
        reason.append("  (").append(shown.text(call.outcome.exceptionID)).append(")");
    return harmless(reason);
}

/// Each line of the text behind the margin.
void writeBlock(std::string_view text, std::string_view margin, const Write& write)
{
    write(margin);
    const auto piece = [&](std::string_view bytes) {
        const std::string safe = harmless(bytes, "\n");
        std::string_view rest = safe;
        for (std::size_t end = rest.find('\n'); end != std::string_view::npos; end = rest.find('\n')) {
            write(rest.substr(0, end + 1));
            write(margin);
            rest.remove_prefix(end + 1);
        }
        write(rest);
    };
    writeIndented(text, piece);
    write("\n");
}

bool isXml(std::string_view text)
{
    return text.starts_with('<');
}

void writeField(const Field& field, const Write& write)
{
    write(std::string(kFieldIndent) + harmless(field.name) + " =");
    if (isXml(field.value)) {
        write("\n");
        writeBlock(field.value, kXmlIndent, write);
    } else {
        write((field.value.empty() ? "" : " ") + harmless(field.value) + "\n");
    }
}

/// What keeps an entry from being all that was said.
void writeMissing(const Entry& entry, const Write& write)
{
    const std::uint64_t more = entry.bytes - entry.text.size();
    if (more > 0) write(std::string(kFieldIndent) + "... and " + std::to_string(more) + " bytes more\n");
    if (!entry.isWhole) write(std::string(kFieldIndent) + "... the log ends here\n");
}

void writeRequest(const Call& call, const Shown& shown, const Write& write)
{
    if (!call.request) return write("    no request in the log\n");
    write("    request, " + std::to_string(call.request->bytes) + " bytes\n");
    for (const Field& field : shown.fields()) writeField(field, write);
    writeMissing(*call.request, write);
}

void writeReply(const Call& call, const Shown& shown, const Write& write)
{
    if (!call.reply) return write("    no reply in the log\n");
    if (call.reply->text.empty()) return write("    nothing came back\n");
    write("    reply, " + std::to_string(call.reply->bytes) + " bytes\n");
    writeBlock(shown.text(call.reply->text), kFieldIndent, write);
    writeMissing(*call.reply, write);
}

/// A name that stands several times has a list of values.
Json requestJson(const Fields& fields)
{
    Json object = Json::object();
    for (const Field& field : fields) {
        const auto there = object.find(field.name);
        if (there == object.end()) {
            object[field.name] = field.value;
            continue;
        }
        if (!there->is_array()) *there = Json::array({*there});
        there->push_back(field.value);
    }
    return object;
}

Json bytesJson(const std::optional<Entry>& entry)
{
    return entry ? Json(entry->bytes) : Json();
}

/// Numbers of the log are those of a system: they fit, unless somebody made them up.
Json numberJson(const std::string& digits)
{
    constexpr std::size_t kSafeDigits = 15;
    return digits.size() <= kSafeDigits ? Json(std::stoull(digits)) : Json(digits);
}

}  // namespace

std::string lineOf(const Call& call, Secrets secrets, Process process)
{
    const Shown shown(call, secrets);
    std::string line = rightAligned(std::to_string(call.number), kNumberColumns) + "  " + call.time + "  ";
    if (process == Process::shown) line += "pid " + call.pid + "  ";
    // What matters comes first: a terminal may have no room for the rest.
    line += leftAligned(shown.operation(), kOperationColumns) + "  ";
    line += leftAligned(std::string(nameOf(call.outcome.kind)), kResultColumns);
    return line + bytesOf(call.request) + " out" + bytesOf(call.reply) + " in" + reasonOf(call, shown);
}

void writeDetails(const Call& call, Secrets secrets, const Write& write)
{
    const Shown shown(call, secrets);
    writeRequest(call, shown, write);
    writeReply(call, shown, write);
}

std::string jsonOf(const Call& call, Secrets secrets)
{
    const Shown shown(call, secrets);
    Json object;
    object["number"] = call.number;
    object["time"] = call.time;
    object["pid"] = numberJson(call.pid);
    object["tid"] = numberJson(call.tid);
    object["operation"] = shown.text(call.operation);
    object["request"] = call.request ? requestJson(shown.fields()) : Json();
    object["result"] = nameOf(call.outcome.kind);
    object["reason"] = shown.text(call.outcome.reason);
    object["exceptionID"] = shown.text(call.outcome.exceptionID);
    object["bytesOut"] = bytesJson(call.request);
    object["bytesIn"] = bytesJson(call.reply);
    object["reply"] = call.reply ? Json(shown.text(call.reply->text)) : Json();
    constexpr bool kAsciiOnly = true;
    return object.dump(-1, ' ', kAsciiOnly, Json::error_handler_t::replace);
}

}  // namespace logreader
