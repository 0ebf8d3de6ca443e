#include "host/ErrorLine.h"

#include "host/Json.h"
#include "host/Masking.h"
#include "host/Text.h"

namespace host {

namespace {

void putUnlessEmpty(Json& json, const char* member, const std::string& text)
{
    // Whatever is no UTF-8 would end the program here.
    if (!text.empty()) json[member] = ToUtf8(FromUtf8(text));
}

}  // namespace

std::string errorLine(const std::string& command, const Failure& failure, Format format)
{
    const std::string reason = Secrets(false).maskedLine(failure.what());
    if (format == Format::table) {
        const std::string id = failure.exceptionID().empty() ? "" : " (" + failure.exceptionID() + ")";
        const std::string context = command.empty() ? "" : command + ": ";
        return "pvwapi: " + context + harmless(std::string_view(reason + id)) + "\n";
    }
    Json error{{"status", static_cast<int>(failure.status())}};
    putUnlessEmpty(error, "command", command);
    putUnlessEmpty(error, "reason", reason);
    putUnlessEmpty(error, "exceptionID", failure.exceptionID());
    if (!failure.network().kind.empty()) {
        error["network"] = {{"kind", failure.network().kind}};
        putUnlessEmpty(error["network"], "text", Secrets(false).maskedLine(failure.network().text));
    }
    return harmless(std::string_view(Json{{"error", error}}.dump())) + "\n";
}

Format wantedFormat(const std::vector<std::string>& words)
{
    Format format = Format::table;
    for (std::size_t at = 0; at < words.size() && words[at] != "--"; ++at) {
        const bool isApart = words[at] == "--format" && at + 1 < words.size();
        if (words[at] == "--format=json" || (isApart && words[at + 1] == "json")) format = Format::json;
        else if (words[at] == "--format=table" || (isApart && words[at + 1] == "table")) format = Format::table;
    }
    return format;
}

}  // namespace host
