#include "tests/host/HostFixture.h"

#include <random>

HostTest::HostTest()
    : folder_(std::filesystem::temp_directory_path() / ("pvwapi-host-" + std::to_string(std::random_device()())))
{
    std::filesystem::create_directories(folder_);
    environment = {
        {"PVWAPI_BASE_URL", server.address("/kznconnect/op.do")},
        {"PVWAPI_USER", "anna"},
        {"PVWAPI_PASSWORD", "p&w"},
        {"XDG_DATA_HOME", path("data")},
        {"XDG_CONFIG_HOME", path("config")},
        {"APPDATA", path("config")},
        {"COLUMNS", ""},
        {"NO_COLOR", ""},
    };
}

HostTest::~HostTest()
{
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

Ended HostTest::pvwapi(const std::vector<std::string>& words)
{
    return runProgram(PVWAPI_HOST_PROGRAM, words, environment);
}

void HostTest::succeed(std::string_view content)
{
    server.reply(200, "text/xml; charset=utf-8",
                 "<kznapi><response><result>SUCCESS</result></response>" + std::string(content) + "</kznapi>");
}

void HostTest::refuse(std::string_view reason, std::string_view exceptionID)
{
    server.reply(200, "text/xml; charset=utf-8",
                 "<kznapi><response><result>FAILURE</result><reason>" + std::string(reason) + "</reason><exceptionID>" +
                     std::string(exceptionID) + "</exceptionID></response></kznapi>");
}

void HostTest::signInAs(std::string_view cred)
{
    succeed("<securityContext><cred>" + std::string(cred) + "</cred></securityContext>");
}

std::vector<std::string> HostTest::bodies() const
{
    std::vector<std::string> result;
    for (const kzn::test::CapturedRequest& request : server.requests()) result.push_back(request.body);
    return result;
}

std::string HostTest::lastRequest() const
{
    const std::string body = bodies().back();
    std::string text;
    for (std::size_t at = 0; at < body.size(); ++at) {
        if (body[at] != '%') {
            text.push_back(body[at]);
            continue;
        }
        text.push_back(static_cast<char>(std::stoi(body.substr(at + 1, 2), nullptr, 16)));
        at += 2;
    }
    return text;
}

std::string HostTest::path(std::string_view name) const
{
    return (folder_ / name).string();
}
