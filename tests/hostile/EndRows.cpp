// Connections that end, or fall silent. Wine has one error for a first line that breaks off and for one that is none.
#include "tests/hostile/Rows.h"

namespace kzn::test {

using std::chrono_literals::operator""ms;

std::vector<Row> endRows()
{
    const std::string whole = replyWith("HTTP/1.1 200 OK");
    const std::size_t body = whole.find("\r\n\r\n") + 4;
    const Outcome closed = noReply(CWapiClient::NETWORK_CLOSED);
    return {
        {"closed at once", Script().close(), closed, {}},
        {"reset at once", Script().reset(), closed, {}},
        {"closed after a while", Script().pause(20ms).close(), closed, {}},
        {"reset after a while", Script().pause(20ms).reset(), closed, {}},
        closes("closed behind one byte", whole.substr(0, 1), cutOff(), notHttp()),
        closes("closed inside the first line", whole.substr(0, 12), cutOff(), notHttp()),
        closes("closed behind the first line", whole.substr(0, 17), cutOff()),
        closes("closed inside a line", whole.substr(0, 25), cutOff()),
        closes("closed before the empty line", whole.substr(0, body - 2), cutOff()),
        closes("closed before the body", whole.substr(0, body), cutOff()),
        closes("closed inside the body", whole.substr(0, body + 5), cutOff()),
        closes("closed before the last byte", whole.substr(0, whole.size() - 1), cutOff()),
        closes("closed behind the reply", whole, plain()),
        {"reset inside the head", Script().send(whole.substr(0, 25)).pause(20ms).reset(), lost(), {}},
        {"reset inside the body", Script().send(whole.substr(0, body + 5)).pause(20ms).reset(), lost(), {}},
        {"reset behind the reply", Script().send(whole).pause(20ms).reset(), plain(), {}},
        stalls("silence at once", "", silence()),
        stalls("silence behind one byte", whole.substr(0, 1), silence()),
        stalls("silence inside a line", whole.substr(0, 25), silence()),
        stalls("silence before the body", whole.substr(0, body), silence()),
        stalls("silence before the last byte", whole.substr(0, whole.size() - 1), silence()),
        {"in two pieces", Script().send(whole.substr(0, 25)).pause(20ms).send(whole.substr(25)), plain(), {}},
        {"in three pieces",
         Script()
             .send(whole.substr(0, body))
             .pause(10ms)
             .send(whole.substr(body, 5))
             .pause(10ms)
             .send(whole.substr(body + 5)),
         plain(),
         {}},
    };
}

}  // namespace kzn::test
