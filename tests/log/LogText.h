// Logs as the library writes them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "log/Calls.h"

namespace logtest {

constexpr std::string_view kTime = "2026-01-31 23:59:58";
constexpr std::string_view kSuccess = "<kznapi><response><result>SUCCESS</result></response></kznapi>";

/// An entry with all that belongs to it.
std::string entry(std::string_view text, std::string_view pid = "11", std::string_view tid = "12",
                  std::string_view endOfLine = "\n", std::string_view level = "Debug");

/// A request and its reply.
std::string call(std::string_view request, std::string_view reply, std::string_view pid = "11",
                 std::string_view tid = "12");

std::string failure(std::string_view reason, std::string_view exceptionID);

/// The calls of a whole log, fed in pieces of this size.
std::vector<logreader::Call> callsOf(std::string_view log, std::size_t piece = 1U << 20U);

/// "operation result" of each.
std::vector<std::string> resultsOf(std::string_view log);

}  // namespace logtest
