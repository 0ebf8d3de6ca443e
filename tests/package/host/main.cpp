// Uses one name of every public header, so that each is there, is enough by itself, and links.
#include <client/WapiClient.h>
#include <pvtrace/pvtrace.h>
#include <pvutil/MessageLoop.h>

#include <iostream>
#include <string_view>

using kzn::pvutil::stringex::FromUtf8;
using kzn::pvutil::stringex::ToUtf8;

namespace {

int failures = 0;
int tracedLines = 0;

void expect(bool holds, const char* what)
{
    if (holds) return;
    ++failures;
    std::cerr << "not so: " << what << '\n';
}

void countLine(int, const PvTraceUnit*)
{
    ++tracedLines;
}

void checkStrings()
{
    const std::string letters = "a \xC3\xA4 \xF0\x9F\x98\x80";
    expect(FromUtf8(letters).size() == 6, "a character outside the basic plane takes two units");
    expect(ToUtf8(FromUtf8(letters)) == letters, "text comes back as it went in");
}

void checkVersion()
{
    expect(std::string_view(CWapiClient::version()) == PVWAPI_VERSION, "the binary is of the header's version");
    expect(std::string_view(PVWAPI_VERSION) == PACKAGE_VERSION, "and so is the package");
    static_assert(PVWAPI_VERSION_NUMBER >= 10000, "a host can ask for a version as it compiles");
}

// Nothing listens on port 1 of this machine.
void checkClient()
{
    CWapiClient client(FromUtf8("http://127.0.0.1:1/kznconnect/op.do"));
    expect(ToUtf8(client.getDmsURL()) == "http://127.0.0.1:1/kzndms", "the endpoints follow from the base URL");

    const int before = tracedLines;
    expect(client.callWapi(FromUtf8("cred"), FromUtf8("cmd=get&type=sessionInfo")) == 0,
           "a call without a service fails");
    expect(client.getNetworkError() == 1, "and says that no server was reached");
    expect(tracedLines > before, "and is traced through the one trace library that both of us have loaded");

    const CWapiClient copy(client);
    expect(ToUtf8(copy.getOpURL()) == "http://127.0.0.1:1/kznconnect/op.do", "a copy has the same endpoints");
}

}  // namespace

int main()
{
    PvTraceSetSink(&countLine);
    checkStrings();
    checkVersion();
    checkClient();
    expect(kzn::pvutil::DispatchPendingMessages() >= 0, "the message loop can be asked");
    PvTraceSetSink(nullptr);
    return failures == 0 ? 0 : 1;
}
