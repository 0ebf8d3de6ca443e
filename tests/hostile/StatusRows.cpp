// First lines, interim replies, other protocols and redirects. What real Windows does with a first line that is none is
// documented as ERROR_WINHTTP_INVALID_SERVER_RESPONSE, which is "no HTTP" here; Wine reads most of them generously.
#include "tests/hostile/Rows.h"

namespace kzn::test {

namespace {

std::vector<Row> firstLines()
{
    return {
        closes("an empty line first", "\r\n" + replyWith("HTTP/1.1 200 OK"), notHttp()),
        closes("no protocol", replyWith("200 OK"), notHttp()),
        closes("another protocol", replyWith("ICY 200 OK"), notHttp(), plain()),
        closes("a protocol in small letters", replyWith("http/1.1 200 OK"), plain()),
        closes("a greeting of a mail server", "220 mail.example ESMTP\r\n", notHttp()),
        closes("a greeting of a shell server", "SSH-2.0-OpenSSH_9.2\r\n", notHttp()),
        closes("a record of TLS", std::string("\x15\x03\x01\x00\x02\x02\x28", 7), notHttp()),
        closes("one zero", std::string(1, '\0'), notHttp()),
        closes("zeros", std::string(5000, '\0'), notHttp()),
        closes("a document alone", kSuccess, notHttp()),
        closes("blanks", std::string(300, ' '), notHttp()),
        closes("line breaks", repeated("\r\n", 300), notHttp()),
        closes("bytes above ASCII", std::string(300, '\xFF'), notHttp()),
        closes("version 0.9", replyWith("HTTP/0.9 200 OK"), notHttp(), plain()),
        closes("version 1.0", replyWith("HTTP/1.0 200 OK"), plain()),
        closes("version 1.2", replyWith("HTTP/1.2 200 OK"), notHttp(), plain()),
        closes("version 2", replyWith("HTTP/2 200"), plain(), notHttp()),
        closes("version 3.0", replyWith("HTTP/3.0 200 OK"), notHttp(), plain()),
        closes("no version", replyWith("HTTP/ 200 OK"), notHttp(), plain()),
        closes("a version in words", replyWith("HTTP/one.one 200 OK"), plain()),
        closes("no status", replyWith("HTTP/1.1"), notHttp()),
        closes("an empty status", replyWith("HTTP/1.1  OK"), notHttp()),
        closes("a status of letters", replyWith("HTTP/1.1 OK 200"), notHttp()),
        closes("a status of two digits", replyWith("HTTP/1.1 20 OK"), notHttp()),
        closes("a status of four digits", replyWith("HTTP/1.1 2000 OK"), notHttp()),
        closes("a status of forty digits", replyWith("HTTP/1.1 " + std::string(40, '2') + " OK"), notHttp()),
        closes("a status below nothing", replyWith("HTTP/1.1 -200 OK"), notHttp()),
        closes("status 0", replyWith("HTTP/1.1 000 OK"), notHttp()),
        closes("status 99", replyWith("HTTP/1.1 099 OK"), notHttp()),
        sends("status 600", replyWith("HTTP/1.1 600 OK"), plain()),
        sends("status 999", replyWith("HTTP/1.1 999 OK"), plain()),
        sends("no phrase", replyWith("HTTP/1.1 200"), plain(), notHttp()),
        sends("a phrase of a kilobyte", replyWith("HTTP/1.1 200 " + std::string(1000, 'k')), plain()),
        sends("a phrase above ASCII", replyWith("HTTP/1.1 200 \xC3\xBC\xFF"), plain()),
        sends("a phrase with a tab", replyWith("HTTP/1.1 200 O\tK"), plain()),
        closes("two blanks before the status", replyWith("HTTP/1.1   200 OK"), plain(), notHttp()),
    };
}

std::vector<Row> statuses()
{
    std::vector<Row> rows;
    for (const char* status : {"201", "203", "300", "305", "400", "401", "403", "404", "407", "408", "413", "421",
                               "429", "500", "501", "502", "503", "504", "511"})
        rows.push_back(
            sends(std::string("status ") + status, replyWith(std::string("HTTP/1.1 ") + status + " X"), plain()));
    return rows;
}

std::vector<Row> others()
{
    const std::string ok = replyWith("HTTP/1.1 200 OK");
    const std::string next = "HTTP/1.1 100 Continue\r\n\r\n";
    return {
        sends("204", "HTTP/1.1 204 No Content\r\n\r\n", senseless()),
        sends("204 with a document", replyWith("HTTP/1.1 204 X"), senseless()),
        closes("204 with a length that is no number", "HTTP/1.1 204 X\r\nContent-Length: x\r\n\r\n", notHttp()),
        sends("304 with a document", replyWith("HTTP/1.1 304 X"), senseless()),
        closes("205 with nothing", "HTTP/1.1 205 X\r\nContent-Length: 0\r\n\r\n", senseless()),
        sends("100, then the reply", next + ok, plain(), notHttp()),
        sends("100 five times", repeated(next, 5) + ok, plain(), notHttp()),
        sends("103 with lines", "HTTP/1.1 103 Early Hints\r\nLink: </x>\r\n\r\n" + ok, plain(), notHttp()),
        closes("100 alone", next, cutOff(), notHttp()),
        closes("100 without its empty line", "HTTP/1.1 100 Continue\r\n", cutOff(), notHttp()),
        sends("100 seventeen times", repeated(next, 17) + ok, tooLarge(), notHttp()),
        stalls("100 for ever", repeated(next, 100'000), tooLarge(), notHttp()),
        stalls("101", "HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n\r\n",
               notHttp()),
        sends("a redirect", replyWith("HTTP/1.1 302 Found", "Location: /there\r\n"), plain()),
        sends("a redirect to itself", replyWith("HTTP/1.1 301 X", "Location: /kznconnect/op.do\r\n"), plain()),
        sends("a redirect to nowhere", replyWith("HTTP/1.1 307 X", "Location: http://\r\n"), plain()),
        sends("a redirect to a file", replyWith("HTTP/1.1 302 X", "Location: file:///etc/passwd\r\n"), plain()),
        sends("a redirect with line breaks", replyWith("HTTP/1.1 302 X", "Location: /a%0d%0aX-Evil:1\r\n"), plain()),
        sends("a demand for a password", replyWith("HTTP/1.1 401 X", "WWW-Authenticate: Basic realm=\"x\"\r\n"),
              plain()),
        sends("a demand for Windows' own", replyWith("HTTP/1.1 401 X", "WWW-Authenticate: Negotiate\r\n"), plain()),
        sends("a proxy's demand", replyWith("HTTP/1.1 407 X", "Proxy-Authenticate: NTLM\r\n"), plain()),
    };
}

}  // namespace

std::vector<Row> statusRows()
{
    std::vector<Row> all;
    for (auto some : {&firstLines, &statuses, &others})
        for (Row& row : some()) all.push_back(std::move(row));
    return all;
}

}  // namespace kzn::test
