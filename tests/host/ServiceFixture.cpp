#include "tests/host/ServiceFixture.h"

#include <cstdlib>
#include <filesystem>

using nlohmann::json;

ServiceHostTest::ServiceHostTest()
{
    const char* const url = std::getenv("TEST_SERVICE_URL");
    environment = {
        {"PVWAPI_BASE_URL", url != nullptr ? url : ""},
        {"XDG_DATA_HOME", (std::filesystem::temp_directory_path() / "pvwapi-host-service-test").string()},
        {"XDG_CONFIG_HOME", (std::filesystem::temp_directory_path() / "pvwapi-host-service-test").string()},
    };
    actAs("anna");
    // The built-in address is somebody else's service.
    if (url == nullptr) ADD_FAILURE() << "TEST_SERVICE_URL is not set";
}

void ServiceHostTest::actAs(const std::string& user)
{
    environment["PVWAPI_USER"] = user;
    environment["PVWAPI_PASSWORD"] = user + "-demo-1";
}

Ended ServiceHostTest::run(const std::vector<std::string>& words)
{
    return runProgram(PVWAPI_HOST_PROGRAM, words, environment);
}

json ServiceHostTest::shown(std::vector<std::string> words)
{
    words.insert(words.end(), {"--format", "json"});
    const Ended ended = run(words);
    EXPECT_EQ(ended.status, 0) << ended.err;
    return json::parse(ended.out, nullptr, false);
}

void ServiceHostTest::done(const std::vector<std::string>& words)
{
    const Ended ended = run(words);
    EXPECT_EQ(ended.status, 0) << words.front() << ": " << ended.err;
    EXPECT_EQ(ended.out, "");
}

void ServiceHostTest::refused(const std::vector<std::string>& words, const std::string& exceptionID)
{
    const Ended ended = run(words);
    EXPECT_EQ(ended.status, 1) << words.front();
    EXPECT_EQ(ended.out, "");
    EXPECT_THAT(ended.err, testing::EndsWith(" (KZN:" + exceptionID + ")\n"));
}

std::vector<std::string> valuesOf(const json& records, const std::string& member)
{
    std::vector<std::string> values;
    for (const json& record : records) values.push_back(record.at(member));
    return values;
}

json recordWith(const json& records, const std::string& member, const std::string& value)
{
    for (const json& record : records) {
        if (record.at(member) == value) return record;
    }
    return nullptr;
}
