#include "host/Call.h"

#include <charconv>

#include "host/Encoding.h"
#include "host/Errors.h"
#include "host/Network.h"
#include "host/Text.h"

namespace host {

namespace {

/// What stands in a request that nobody sends, where a sign-in or a session is not given.
Credentials withPlaceholders(Credentials credentials, Secrets& secrets)
{
    const auto put = [&](CStringT& field, const char* placeholder) {
        if (!field.empty()) return;
        field = FromUtf8(placeholder);
        secrets.allow(placeholder);
    };
    put(credentials.user, "USER");
    if (credentials.token.empty()) put(credentials.password, "PASSWORD");
    put(credentials.cred, "CRED");
    return credentials;
}

/// What there is to say where neither the service nor the library says anything.
std::string withoutReason(const Wire& wire)
{
    if (!wire.replied() || wire.isAnswer()) return "failed without a reason";
    return "the reply is no answer of the service (HTTP " + std::to_string(wire.status()) + ")";
}

}  // namespace

Call::Call(const Settings& settings, Values values)
    : settings_(settings),
      values_(std::move(values)),
      client_(FromUtf8(settings.baseUrl)),
      wire_(client_, settings.sight),
      interrupts_([this] { stop(); }),
      credentials_(readCredentials(settings.credentialsFile))
{
    client_.setDeadline(settings.timeout);
    if (settings.sight.isDry) credentials_ = withPlaceholders(credentials_, wire_.secrets());
    client_.setRootCred(credentials_.cred);
    for (const CStringT& secret : {credentials_.password, credentials_.token, credentials_.cred}) {
        wire_.secrets().add(ToUtf8(secret));
    }
}

Call::~Call()
{
    constexpr unsigned int kSignOut = 3'000;
    if (!ownSession_) return;
    wire_.goOn();
    client_.setDeadline(kSignOut);
    client_.logout(client_.getRootCred());
}

/// A session of the command's own still ends in order; whoever stops that too does not wait for it.
void Call::stop()
{
    wire_.stop();
    client_.cancel();
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
    return given(name) ? list(name).back() : CStringT();
}

CStringT Call::asTyped(const std::string& name) const
{
    return given(name) ? listAsTyped(name).back() : CStringT();
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
    std::vector<CStringT> texts = listAsTyped(name);
    for (const CStringT& text : texts) requireXml(text, name);
    return texts;
}

std::vector<CStringT> Call::listAsTyped(const std::string& name) const
{
    std::vector<CStringT> texts;
    for (const std::string& value : values(name)) texts.push_back(FromUtf8(value));
    return texts;
}

std::vector<CStringT> Call::carried(const std::string& name, CStringT (*as)(const CStringT& text)) const
{
    std::vector<CStringT> texts = list(name);
    for (CStringT& text : texts) text = as(text);
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
    const Credentials& c = identity();
    const int useToken = c.token.empty() ? 0 : 1;
    check(client_.login(c.user, c.token, c.isp, c.password, useToken, 1));
    if (client_.getRootCred().empty()) throw OperationFailed("the service signed in without a credential");
}

const Credentials& Call::identity()
{
    Credentials& c = credentials_;
    if (!c.user.empty() && c.password.empty() && c.token.empty()) {
        const auto password = system::askSecret("Password for " + harmless(c.user) + ": ");
        if (password) c.password = FromUtf8(*password);
        requireXml(c.password, "password");
        wire_.secrets().add(ToUtf8(c.password));
    }
    if (c.user.empty() || (c.password.empty() && c.token.empty())) {
        throw LocalProblem(
            "no credentials: set PVWAPI_CRED, or PVWAPI_USER and PVWAPI_PASSWORD or PVWAPI_TOKEN, or "
            "name a file with --credentials");
    }
    return c;
}

void Call::checkNetwork()
{
    if (client_.getNetworkErrorKind() == CWapiClient::NETWORK_NONE) return;
    throw networkFailure(client_);
}

void Call::check(int result, const std::string& refusal)
{
    if (result == 1) return;
    checkNetwork();
    const WAPIMESSAGE message = client_.GetLstMsg();
    std::string reason = message.reason.empty() ? refusal : ToUtf8(message.reason);
    if (reason.empty()) reason = withoutReason(wire_);
    const Secrets& secrets = wire_.secrets();
    throw OperationFailed(secrets.maskedLine(reason), secrets.maskedLine(ToUtf8(message.exceptionID)));
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
