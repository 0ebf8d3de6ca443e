// Head lines: what they are made of, how many, and lengths that contradict each other. Real Windows documents limits of
// a head (ERROR_WINHTTP_HEADER_SIZE_OVERFLOW) that the transport sets to the library's own; Wine has none, and
// ends a head at the first line that it cannot read.
#include "pvutil/Limits.h"
#include "tests/hostile/Rows.h"

namespace kzn::test {

namespace limits = pvutil::limits;

namespace {

const std::string kOk = "HTTP/1.1 200 OK";

Row line(std::string name, const std::string& lines, Outcome outcome = plain(), std::optional<Outcome> underWine = {})
{
    return sends(std::move(name), replyWith(kOk, lines), outcome, underWine);
}

std::vector<Row> lines()
{
    return {
        line("a name without a value", "X-Empty:\r\n"),
        line("a name without a colon", "X-None\r\n", notHttp(), cutOff()),
        line("a value without a name", ": value\r\n", plain(), cutOff()),
        line("a blank before the colon", "X-Blank : 1\r\n", plain(), cutOff()),
        line("a folded line", "X-Folded: 1\r\n  2\r\n\t3\r\n", plain(), cutOff()),
        line("a folded first line", " folded: 1\r\n", plain(), cutOff()),
        line("a name above ASCII", "X-\xC3\xBC: 1\r\n"),
        line("a value above ASCII", "X-Value: \xFF\xFE\xC3\r\n"),
        line("a bell in a value", "X-Bell: \a\r\n"),
        line("the same line a hundred times", repeated("X-Same: 1\r\n", 100)),
        line("lines that end in a line feed alone", "X-One: 1\nX-Two: 2\n"),
        line("cookies", repeated("Set-Cookie: a=b; Domain=.example; Path=/\r\n", 50)),
        line("a name of a kilobyte", std::string(1000, 'n') + ": 1\r\n"),
        line("a value of a kilobyte", "X: " + std::string(1000, 'v') + "\r\n"),
        line("a value of fifty kilobytes", "X: " + std::string(50'000, 'v') + "\r\n"),
        line("a line beyond the limit", "X: " + std::string(limits::kHeadLineBytes, 'v') + "\r\n", tooLarge(), plain()),
        line("lines beyond the limit", repeated("X: 1\r\n", limits::kHeadLines), tooLarge()),
        line("bytes beyond the limit", repeated("X: " + std::string(1000, 'x') + "\r\n", 300), tooLarge()),
        line("an encoding that nobody asked for", "Content-Encoding: x-none\r\n"),
        line("a language", "Content-Language: de\r\n"),
        line("no cache", "Cache-Control: no-store\r\nPragma: no-cache\r\nExpires: 0\r\n"),
        line("a connection to be kept", "Connection: keep-alive\r\nKeep-Alive: timeout=5, max=1\r\n"),
        line("a connection to be kept for ever", "Keep-Alive: timeout=99999999999, max=-1\r\n"),
        line("a connection to be closed", "Connection: close\r\n"),
        line("an upgrade", "Upgrade: h2c\r\nConnection: Upgrade\r\n"),
        line("another service", "Alt-Svc: h3=\":443\"; ma=86400\r\n"),
        line("strict transport", "Strict-Transport-Security: max-age=31536000\r\n"),
        line("a refresh", "Refresh: 0; url=http://127.0.0.1:1/\r\n"),
        closes("a zero in a value", replyWith(kOk, std::string("X-Zero: a\0b\r\n", 13)), notHttp(), cutOff()),
        closes("a zero in a name", replyWith(kOk, std::string("X-\0Zero: a\r\n", 12)), notHttp(), cutOff()),
        stalls("lines for ever", kOk + "\r\n" + repeated("X: 1\r\n", 500'000), tooLarge(), silence()),
        stalls("a line for ever", kOk + "\r\nX: " + std::string(3'000'000, 'x'), tooLarge(), silence()),
        stalls("a first line for ever", kOk + std::string(3'000'000, 'x'), tooLarge(), silence()),
    };
}

std::string length(const std::string& value)
{
    return kOk + "\r\nContent-Length: " + value + "\r\n\r\n";
}

std::vector<Row> lengths()
{
    const std::string own = std::to_string(kSuccess.size());
    const auto both = [&](const std::string& other) {
        return kOk + "\r\nContent-Length: " + own + "\r\nContent-Length: " + other + "\r\n\r\n" + kSuccess;
    };
    return {
        closes("a length in words", length("ten") + kSuccess, notHttp()),
        closes("a length below nothing", length("-1") + kSuccess, notHttp()),
        closes("a length with a sign", length("+" + own) + kSuccess, notHttp()),
        closes("a length of sixteens", length("0x3E") + kSuccess, notHttp()),
        closes("a length with a fraction", length(own + ".5") + kSuccess, notHttp()),
        closes("a length with letters behind it", length(own + "abc") + kSuccess, notHttp()),
        closes("an empty length", length("") + kSuccess, notHttp()),
        closes("a length of a list", length(own + ", " + own) + kSuccess, notHttp()),
        sends("a length with zeros before it", length("000" + own) + kSuccess, plain()),
        sends("a length with blanks around it", length("  " + own + " \t") + kSuccess, plain()),
        stalls("a length of 4 GiB", length("4294967296"), tooLarge()),
        stalls("a length of 4 GiB and ten", length("4294967306"), tooLarge()),
        stalls("a length of 8 EiB less one", length("9223372036854775807"), tooLarge()),
        stalls("a length of 16 EiB", length("18446744073709551616"), tooLarge()),
        stalls("a length of forty digits", length(std::string(40, '9')), tooLarge()),
        stalls("a length beyond the limit", length(std::to_string(limits::kReplyBytes + 1)), tooLarge()),
        sends("a length of nothing", length("0"), senseless()),
        sends("a shorter length", length("10") + kSuccess, senseless()),
        closes("a longer length", length("1000") + kSuccess, cutOff()),
        stalls("a longer length, and silence", length("1000") + kSuccess, silence()),
        sends("the same length twice", both(own), plain()),
        closes("two lengths", both("10"), notHttp()),
        closes("no length at all", kOk + "\r\n\r\n" + kSuccess, plain()),
        stalls("no length, and silence", kOk + "\r\n\r\n" + kSuccess, silence()),
    };
}

}  // namespace

std::vector<Row> headRows()
{
    std::vector<Row> all = lines();
    for (Row& row : lengths()) all.push_back(std::move(row));
    return all;
}

}  // namespace kzn::test
