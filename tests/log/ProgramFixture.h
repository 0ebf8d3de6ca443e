// The program with a folder of its own.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "tests/host/Program.h"

class LogProgramTest : public testing::Test {
protected:
    LogProgramTest();
    ~LogProgramTest() override;

    Ended run(const std::vector<std::string>& words) const;

    std::string path(std::string_view name) const;
    void write(std::string_view name, std::string_view text) const;
    void append(std::string_view name, std::string_view text) const;

    Environment environment;

private:
    std::filesystem::path folder_;
};
