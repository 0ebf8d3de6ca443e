#include "host/Credentials.h"

#include <array>
#include <string_view>

#include "host/Encoding.h"
#include "host/Errors.h"
#include "host/System.h"
#include "host/Text.h"

namespace host {

namespace {

constexpr std::size_t kFileLimit = 65'536;
constexpr std::string_view kBlanks = " \t\r";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

struct Field {
    const char* key;
    const char* variable;
    CStringT Credentials::*member;
};

constexpr std::array kFields = std::to_array<Field>({
    {"user", "PVWAPI_USER", &Credentials::user},
    {"password", "PVWAPI_PASSWORD", &Credentials::password},
    {"token", "PVWAPI_TOKEN", &Credentials::token},
    {"isp", "PVWAPI_ISP", &Credentials::isp},
    {"cred", "PVWAPI_CRED", &Credentials::cred},
});

std::string_view trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// The line itself never gets into a message: it may hold the password.
void readLine(Credentials& credentials, std::string_view line, const std::string& where)
{
    if (!isUtf8(line)) throw LocalProblem(where + ": not UTF-8");
    line = trimmed(line);
    if (line.empty() || line.front() == '#') return;

    const std::size_t sign = line.find('=');
    if (sign == std::string_view::npos) throw LocalProblem(where + ": not of the form name=value");
    const std::string_view key = trimmed(line.substr(0, sign));
    for (const Field& field : kFields) {
        if (key != field.key) continue;
        credentials.*field.member = FromUtf8(trimmed(line.substr(sign + 1)));
        requireXml(credentials.*field.member, where + ": " + field.key);
        return;
    }
    throw LocalProblem(where + ": the name is none of user, password, token, isp and cred");
}

Credentials fromFile(const std::string& file)
{
    const std::string content = system::readPrivateFile(file, kFileLimit);
    const std::string name = file == "-" ? "standard input" : file;
    std::string_view rest = content;
    if (rest.starts_with(kByteOrderMark)) rest.remove_prefix(kByteOrderMark.size());

    Credentials credentials;
    for (int number = 1; !rest.empty(); ++number) {
        const std::size_t end = rest.find('\n');
        readLine(credentials, rest.substr(0, end), name + ":" + std::to_string(number));
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    }
    return credentials;
}

Credentials fromEnvironment()
{
    Credentials credentials;
    for (const Field& field : kFields) {
        credentials.*field.member = FromUtf8(system::environment(field.variable));
        requireXml(credentials.*field.member, field.variable);
    }
    return credentials;
}

}  // namespace

Credentials readCredentials(const std::string& file)
{
    return file.empty() ? fromEnvironment() : fromFile(file);
}

void saveSession(const std::string& file, const CStringT& cred)
{
    // What is read line by line could not give such a credential back.
    for (const auto unit : cred) {
        if (unit < ' ') throw LocalProblem("the credential holds a control character and cannot be saved");
    }
    system::writePrivateFile(file, "cred=" + ToUtf8(cred) + "\n");
}

}  // namespace host
