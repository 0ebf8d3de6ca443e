// The command-line program against a server that the test scripts.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "tests/host/Program.h"
#include "tests/support/CaptureServer.h"

using Words = std::vector<std::string>;

class HostTest : public testing::Test {
protected:
    HostTest();
    ~HostTest() override;

    /// Runs pvwapi with what `environment` holds.
    Ended pvwapi(const std::vector<std::string>& words);

    /// The service says yes, with `content` beside the result.
    void succeed(std::string_view content = {});
    /// The service says no.
    void refuse(std::string_view reason, std::string_view exceptionID);
    void signInAs(std::string_view cred);

    std::vector<std::string> bodies() const;
    /// What the last request said, without its percent-encoding.
    std::string lastRequest() const;
    std::string path(std::string_view name) const;

    kzn::test::CaptureServer server;
    Environment environment;

private:
    std::filesystem::path folder_;
};

/// The same, with the credential C1 of a session that stands already.
class SessionHostTest : public HostTest {
protected:
    SessionHostTest() { environment["PVWAPI_CRED"] = "C1"; }
};
