#include "service/http/RequestLog.h"

#include <array>
#include <cstdio>
#include <ostream>

#include "log/Mask.h"

namespace service::http {

namespace {

constexpr std::size_t kLongestWord = 100;
constexpr std::size_t kLongestSearched = 4096;

// What was sent may be anything: it stays one word of the line.
std::string word(std::string_view text)
{
    if (text.empty()) return "-";
    std::string out(text.substr(0, kLongestWord));
    for (char& c : out) {
        if (c <= ' ' || c > '~') c = '?';
    }
    return out;
}

// Whoever encodes a form once too often sends a password in the place of a command.
std::string wordWithoutSecrets(std::string_view text)
{
    const std::string shown = logreader::masked(text.substr(0, kLongestSearched));
    return word(logreader::hidesSecret(shown) ? logreader::kMask : std::string_view(shown));
}

std::string operationText(const Operation& operation)
{
    return wordWithoutSecrets(operation.task.empty() ? operation.command : operation.command + '/' + operation.task);
}

std::string_view between(std::string_view text, std::string_view begin, std::string_view end)
{
    const std::size_t at = text.rfind(begin);
    if (at == std::string_view::npos) return {};
    text.remove_prefix(at + begin.size());
    return text.substr(0, text.find(end));
}

// "SUCCESS", or "FAILURE" with its exception identifier; "-" where the reply is none of ours.
std::string resultText(const Response& response)
{
    constexpr std::size_t kHead = 200;
    const std::string_view head = std::string_view(response.body).substr(0, kHead);
    if (head.find("<result>SUCCESS</result>") != std::string_view::npos) return "SUCCESS";
    if (head.find("<result>FAILURE</result>") == std::string_view::npos) return "-";
    return "FAILURE " + word(between(response.body, "<exceptionID>", "</exceptionID>"));
}

std::string faultText(const Response& response)
{
    return response.fault ? " fault " + std::string(faults::kindName(response.fault->kind)) : std::string();
}

std::string millisecondsText(std::chrono::steady_clock::duration time)
{
    std::array<char, 32> text{};
    const double ms = std::chrono::duration<double, std::milli>(time).count();
    const int length = std::snprintf(text.data(), text.size(), "%.1f ms", ms);
    return {text.data(), static_cast<std::size_t>(length)};
}

}  // namespace

void RequestLog::note(const RequestHead& head, std::size_t bodyBytes, const Response& response, Moment begun)
{
    const auto time = std::chrono::steady_clock::now() - begun;
    const std::string line = '#' + std::to_string(++number_) + ' ' + word(head.method) + ' ' +
                             wordWithoutSecrets(pathOf(head.target)) + ' ' + operationText(response.operation) + ' ' +
                             std::to_string(bodyBytes) + '>' + std::to_string(response.body.size()) + " B " +
                             std::to_string(response.status) + ' ' + resultText(response) + ' ' +
                             millisecondsText(time) + faultText(response) + '\n';
    out_ << line << std::flush;
}

}  // namespace service::http
