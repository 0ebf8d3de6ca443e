// The command-line program against the stand-in service with its demo organisation.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/host/Program.h"

class ServiceHostTest : public testing::Test {
protected:
    using json = nlohmann::json;

    /// Signed in as anna.
    ServiceHostTest();

    /// From now on the commands are those of another user of the demo organisation.
    void actAs(const std::string& user);

    Ended run(const std::vector<std::string>& words);

    /// Runs a command that must succeed and returns what it shows.
    json shown(std::vector<std::string> words);

    /// Runs a command that must succeed and that shows nothing.
    void done(const std::vector<std::string>& words);

    /// Runs a command that the service must refuse with the exception identifier of this name.
    void refused(const std::vector<std::string>& words, const std::string& exceptionID);

    Environment environment;
};

/// The values of one member, over a list of records.
std::vector<std::string> valuesOf(const nlohmann::json& records, const std::string& member);

/// The first record of a list whose member has this value; null where there is none.
nlohmann::json recordWith(const nlohmann::json& records, const std::string& member, const std::string& value);
