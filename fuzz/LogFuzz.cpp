// The reader of the log. The first byte of the input says in pieces of which size it comes.
#include <algorithm>
#include <cstdint>
#include <string>

#include "fuzz/Check.h"
#include "log/Calls.h"
#include "log/Mask.h"
#include "log/Report.h"

namespace {

using namespace logreader;

bool isHarmless(std::string_view text, char kept)
{
    for (const char c : text) {
        if (c != kept && (static_cast<unsigned char>(c) < 0x20 || c == 0x7F)) return false;
    }
    return true;
}

std::string shown(const Call& call)
{
    const std::string line = lineOf(call, Secrets::masked, Process::shown);
    fuzz::check(isHarmless(line, ' '), "a call is one line");
    std::string details;
    writeDetails(call, Secrets::masked, [&](std::string_view piece) { details += piece; });
    fuzz::check(isHarmless(details, '\n') && details.ends_with('\n'), "details are lines");
    const std::string json = jsonOf(call, Secrets::masked);
    fuzz::check(isHarmless(json, ' ') && json.starts_with('{'), "an object is one line");
    // The value of a secret's field does not get through, unless it stands where no name says what it is.
    for (const Field& field : masked(call.fields)) {
        const bool isOpen = field.value != kMask && !field.value.empty();
        fuzz::check(!isSecretName(field.name) || !isOpen, "a secret is masked");
    }
    return line + details + json;
}

std::string read(std::string_view log, std::size_t piece)
{
    std::string text;
    CallReader reader([&](const Call& call) { text += shown(call); });
    while (!log.empty()) {
        reader.feed(log.substr(0, piece));
        log.remove_prefix(std::min(piece, log.size()));
    }
    reader.end();
    return text;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string_view input = fuzz::bytes(data, size);
    const std::size_t piece = fuzz::takeByte(input) + 1;
    fuzz::check(read(input, piece) == read(input, input.size() + 1), "pieces make no difference");
    return 0;
}
