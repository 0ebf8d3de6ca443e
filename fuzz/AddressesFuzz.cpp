// Addresses and header lines from outside: of a host, of a redirect, of an icon.
#include <algorithm>
#include <string>

#include "fuzz/Check.h"
#include "pvutil/HttpHeaders.h"
#include "pvutil/Url.h"
#include "spaces/IconName.h"

namespace {

using kzn::pvutil::Url;
using kzn::pvutil::stringex::FromUtf8;
using kzn::pvutil::stringex::ToUtf8;

bool isPrintable(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c < '\x7F'; });
}

void checkUrl(const Url& url)
{
    fuzz::check(!url.host.empty() && isPrintable(url.host), "a host of printable letters");
    fuzz::check(url.target.starts_with('/') && isPrintable(url.target), "a target of printable letters");
    const auto again = kzn::pvutil::parseUrl(url.text());
    fuzz::check(again && again->text() == url.text() && again->sameOrigin(url), "its text says the same");
}

void checkHeaders(std::string_view input)
{
    for (const std::string& line : kzn::pvutil::callerHeaders(input)) {
        const std::size_t colon = line.find(':');
        fuzz::check(colon != std::string::npos && colon != 0, "a name and a colon");
        fuzz::check(line.find_first_of(std::string_view("\r\n\0", 3)) == std::string::npos, "one line");
    }
}

void checkIconName(std::string_view input)
{
    const std::string name = ToUtf8(wapi::iconFileName(FromUtf8(input)));
    fuzz::check(!name.empty() && name != "." && name.find("..") == std::string::npos, "a name");
    fuzz::check(name.find_first_of(std::string_view("/\\:*?\"<>|\0", 10)) == std::string::npos, "no path, no stream");
    fuzz::check(name.back() != '.' && name.back() != ' ', "nothing that a system drops");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view input = fuzz::bytes(data, size);
    if (const auto url = kzn::pvutil::parseUrl(input)) checkUrl(*url);
    const Url base = kzn::pvutil::parseUrl("https://h.example:8443/a/b?c").value();
    if (const auto url = kzn::pvutil::resolveUrl(base, input)) checkUrl(*url);
    checkHeaders(input);
    checkIconName(input);
    return 0;
}
