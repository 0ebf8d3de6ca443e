#include "host/Call.h"

#include <charconv>

#include "host/Encoding.h"
#include "host/Errors.h"
#include "host/Text.h"

namespace host {

Call::Call(const Settings& settings, Values values)
    : settings_(settings),
      values_(std::move(values)),
      credentials_(readCredentials(settings.credentialsFile)),
      client_(FromUtf8(settings.baseUrl))
{
    client_.setRootCred(credentials_.cred);
}

Call::~Call()
{
    if (ownSession_) client_.logout(client_.getRootCred());
}

const std::vector<std::string>& Call::values(const std::string& name) const
{
    static const std::vector<std::string> kNone;
    const auto found = values_.find(name);
    return found != values_.end() ? found->second : kNone;
}

bool Call::given(const std::string& name) const
{
    return !values(name).empty();
}

CStringT Call::text(const std::string& name) const
{
    return given(name) ? FromUtf8(values(name).back()) : CStringT();
}

int Call::number(const std::string& name, int otherwise) const
{
    if (!given(name)) return otherwise;
    const std::string& digits = values(name).back();
    int number = otherwise;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
}

std::vector<CStringT> Call::list(const std::string& name) const
{
    std::vector<CStringT> texts;
    for (const std::string& value : values(name)) texts.push_back(FromUtf8(value));
    return texts;
}

std::vector<CStringT> Call::carried(const std::string& name, CStringT (*as)(const CStringT& text)) const
{
    std::vector<CStringT> texts = list(name);
    for (CStringT& text : texts) {
        if (!fitsXml(text)) throw LocalProblem(name + ": holds a character that no request can carry");
        text = as(text);
    }
    return texts;
}

CStringT Call::xml(const std::string& name) const
{
    return given(name) ? xmlList(name).back() : CStringT();
}

CStringT Call::cdata(const std::string& name) const
{
    return given(name) ? cdataList(name).back() : CStringT();
}

std::vector<CStringT> Call::xmlList(const std::string& name) const
{
    return carried(name, xmlOf);
}

std::vector<CStringT> Call::cdataList(const std::string& name) const
{
    return carried(name, cdataOf);
}

const CStringT& Call::cred()
{
    if (client_.getRootCred().empty()) {
        signIn();
        ownSession_ = true;
    }
    return client_.getRootCred();
}

CStringT Call::formCred()
{
    return percentOf(cred());
}

void Call::signIn()
{
    const Credentials& c = credentials_;
    if (c.user.empty() || (c.password.empty() && c.token.empty())) {
        throw LocalProblem(
            "no credentials: set PVWAPI_CRED, or PVWAPI_USER and PVWAPI_PASSWORD or PVWAPI_TOKEN, or "
            "name a file with --credentials");
    }
    const int useToken = c.token.empty() ? 0 : 1;
    check(client_.login(c.user, c.token, c.isp, c.password, useToken, 1));
    if (client_.getRootCred().empty()) throw OperationFailed("the service signed in without a credential");
}

void Call::check(int result, const std::string& refusal)
{
    if (result == 1) return;
    const WAPIMESSAGE message = client_.GetLstMsg();
    std::string line = message.reason.empty() ? refusal : ToUtf8(message.reason);
    if (line.empty()) line = "failed without a reason";
    if (!message.exceptionID.empty()) line += " (" + ToUtf8(message.exceptionID) + ")";
    throw OperationFailed(line);
}

std::string Call::emptyOne(std::initializer_list<const char*> names) const
{
    for (const char* const name : names) {
        if (text(name).empty()) return "nothing was sent: " + std::string(name) + " is empty";
    }
    return {};
}

CStringT Call::userID()
{
    if (given("--user")) return text("--user");
    CUserConfigInfo info;
    check(client_.getUserConfigureInfo(cred(), info));
    return client_.getUserID();
}

void Call::showText(const std::string& name, const CStringT& text)
{
    if (settings_.format == Format::json) return show(Json{{name, text}});
    output_ += harmless(text, "\t\n") + '\n';
}

}  // namespace host
