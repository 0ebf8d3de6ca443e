// Signing in and out, and keeping the session alive.
#include "client/Operation.h"
#include "client/TraceLog.h"
#include "pvutil/HttpClient.h"
#include "records/Number.h"

using namespace wapi;

namespace {

constexpr unsigned kOneHour = 3'600'000;

class CXMLWapiGetSessionResponse : public CXMLWapiCommonResponse {
public:
    CXMLWapiGetSessionResponse() { select(kDirectReply, {{"sessionInfo/sessionDuration/", &sessionDuration}}); }

    CStringT sessionDuration;
};

FormBody loginBody(const CStringT& userName, const CStringT& token, const CStringT& isp, const CStringT& password,
                   int useToken)
{
    FormBody body;
    body.encoded("cmd=", "login").encoded("&username=", userName);
    if (useToken != 0) body.encoded("&token=", token);
    else body.encoded("&password=", password);
    body.encoded("&isp=", isp).literal("&autocommit=true");
    return body;
}

}  // namespace

int CWapiClient::login(CStringT userName, CStringT token, CStringT isp, CStringT password, int useToken, int send)
{
    return operation("CWapiClient::login", Timer::leave, [&] {
        const FormBody body = loginBody(userName, token, isp, password, useToken);
        CXMLWapiMessage reply;
        if (send == 0) {
            trace(TraceLevel::debug, body);
            return 0;
        }
        if (!post(body, reply)) return 0;
        rootCred = std::move(reply.cred);
        rearmTimer();
        return 1;
    });
}

int CWapiClient::getCredForExpired(CStringT& newCred, CStringT userName, CStringT token, CStringT isp,
                                   CStringT password, int useToken)
{
    return operation("CWapiClient::getCredForExpired", Timer::leave, [&] {
        CXMLWapiMessage reply;
        if (!post(loginBody(userName, token, isp, password, useToken), reply)) return 0;
        newCred = std::move(reply.cred);
        return 1;
    });
}

int CWapiClient::logout(const CStringT& cred)
{
    const ScopeTracer scope("CWapiClient::logout");
    const kzn::pvutil::CallScope call(callControl.get(), std::chrono::milliseconds(deadline));
    contained([&] {
        if (!callControl) return 0;
        FormBody body;
        body.encoded("cmd=", "logout").encoded("&cred=", cred);
        traceLog().write(LogLevel::debug, body);
        kzn::pvutil::CZelHttpClient http;
        prepare(http);
        http.Request(opURL, kzn::pvutil::HTTP_METHOD::POST, body, {}, kzn::pvutil::HttpOption::kForm);
        logReply(http);
        return 1;
    });
    return 1;  // the session is over for the host, whatever the service makes of it
}

int CWapiClient::getSessionInfo(const CStringT& cred)
{
    return operation("CWapiClient::getSessionInfo", Timer::leave, [&] {
        CXMLWapiGetSessionResponse reply;
        if (!post(buildObjectRequest(cred, OBJ_TYPE::sessionInfo, wide("sessioninfo")), reply)) return 0;

        refreshInterval = static_cast<unsigned int>(toInt(reply.sessionDuration) / 2);
        if (!reply.sessionDuration.empty() && refreshInterval != 0) {
            trace(TraceLevel::debug, "Root Cred (user session) being refreshed.");
        } else {
            trace(TraceLevel::debug, "Failed to retrieve session duration from wapi sessioninfo response.");
            refreshInterval = kOneHour;
        }
        return 1;
    });
}

int CWapiClient::cloneSession(const CStringT& cred, const CStringT& workspace, CStringT& newCred)
{
    return operation("CWapiClient::cloneSession", Timer::rearm, [&] {
        if (workspace.empty()) trace(TraceLevel::debug, "closeSession for user session.");  // sic

        FormBody body;
        body.literal("cmd=cloneSession&autocommit=true").encoded("&cred=", cred);
        if (!workspace.empty()) body.encoded("&workspace=", workspace);

        CXMLWapiMessage reply;
        if (!post(body, reply)) return 0;
        newCred = std::move(reply.cred);
        return 1;
    });
}

void CWapiClient::OnTimer(unsigned int)
{
    trace(TraceLevel::debug, "Refresh root cred timer.");
    const int result = getSessionInfo(rootCred);
    rearmTimer();
    // The listener may replace itself and may destroy the client: a copy of it is called, and nothing comes after it.
    contained([this, result] {
        if (const RefreshListener listener = refreshListener) listener(result);
        return 1;
    });
}
