// The road of every request: log, post, log, parse, judge; and the two calls that pass a caller's own command through.
#include "client/Operation.h"
#include "client/TraceLog.h"
#include "pvutil/HttpClient.h"
#include "pvutil/HttpExchange.h"

using namespace wapi;
using kzn::pvutil::CZelHttpClient;
using kzn::pvutil::HTTP_METHOD;
namespace HttpOption = kzn::pvutil::HttpOption;

namespace {

constexpr int kFound = 200;
constexpr std::string_view kNoConnection = "Network error. Unable to connect to";  // the URL follows without a blank
constexpr std::string_view kBadStatus = "Network error, http return code is not 200. It is";
constexpr std::string_view kProxyCall = "CWapiClient::WapiProxyCall";

// The reason stands beside the response here, where no parser looks for it.
constexpr std::string_view kLoginRefusal =
    "<kznapi><response><result>FAILURE</result></response><reason>Can't call login command!</reason></kznapi>";

HTTP_METHOD transportMethod(CWapiClient::METHOD_TYPE method) noexcept
{
    return method == CWapiClient::METHOD_POST ? HTTP_METHOD::POST : HTTP_METHOD::GET;
}

// The form behind the address. A "#" would end what goes out: the address's own is cut, the form's is written encoded.
CStringT queryAddress(const CStringT& url, const CStringT& form)
{
    CStringT address = url.substr(0, url.find('#'));
    address += '?';
    for (const auto unit : form) {
        if (unit == '#') appendAscii(address, "%23");
        else address += unit;
    }
    return address;
}

// A post carries the form as its body, anything else behind one "?", whatever the address holds.
int sendProxied(CZelHttpClient& http, HTTP_METHOD method, const CStringT& url, const CStringT& form,
                const CStringT& headers)
{
    if (method == HTTP_METHOD::POST) return http.Request(url, method, form, headers, HttpOption::kProxy);
    return http.Request(queryAddress(url, form), method, CStringT(), headers, HttpOption::kProxy);
}

static_assert(static_cast<int>(CWapiClient::NETWORK_LOCAL) == static_cast<int>(kzn::pvutil::HttpFault::local),
              "a cause has one number inside and outside");

FormBody proxiedForm(const CStringT& command, int withCred, const CStringT& cred)
{
    FormBody form;
    form.literal(command);
    if (withCred != 0) form.encoded("&cred=", cred);
    return form;
}

// Without the credential nobody judges what came.
int outcomeOf(const CZelHttpClient& http, int withCred)
{
    if (withCred == 0) return 0;
    CXMLWapiCommonResponse parser;
    parser.read(http);
    return parser.succeeded() ? 1 : 0;
}

void traceBadStatus(int status)
{
    FormBody note;
    note.literal(kProxyCall, ". ", kBadStatus, status);
    trace(TraceLevel::error, note);
}

}  // namespace

int CWapiClient::refuse(std::string_view reason, const CStringT& what)
{
    lastMessage.clear();
    lastMessage.reason = wide(reason) + what;
    return 0;
}

// What every exchange of the client goes by.
void CWapiClient::prepare(CZelHttpClient& http)
{
    using kzn::pvutil::HttpExchange;
    http.ControlledBy(callControl.get());
    if (!exchangeListener) return;
    http.OnExchange([this](const HttpExchange& exchange, int status, std::chrono::milliseconds time) {
        const std::string url = exchange.url.text();
        Exchange seen;
        seen.method = exchange.method == HTTP_METHOD::POST ? METHOD_POST : METHOD_GET;
        seen.url = url;
        seen.headers = exchange.headers;
        seen.body = exchange.body;
        seen.status = status;
        if (status > 0) seen.reply = exchange.reply;
        seen.milliseconds = static_cast<unsigned int>(time.count());
        return exchangeListener(seen);
    });
}

void CWapiClient::keepCause(const CZelHttpClient& http) noexcept
{
    networkErrorKind = static_cast<NETWORK_ERROR>(http.Failure().fault);
    networkErrorText.clear();
    try {
        networkErrorText = kzn::pvutil::stringex::FromUtf8(textOf(http.Failure()));
    } catch (...) {  // no memory for the text: the kind has to say it
    }
}

void CWapiClient::traceCause() const noexcept
{
    if (networkErrorKind == NETWORK_NONE) return;
    try {
        trace(TraceLevel::error, wide("CWapiClient: ") + networkErrorText);
    } catch (...) {  // no memory for the line
    }
}

// The text of the reply is made for those who ask for it, of which there are none as a rule.
int CWapiClient::judge(const CZelHttpClient& http, CXMLWapiCommonResponse& parser)
{
    lastMessage.clear();
    parser.read(http);
    if (traceListens()) trace(TraceLevel::debug, http.ResponseContent());
    if (parser.succeeded()) return 1;

    lastMessage.response = http.ResponseContent();
    lastMessage.reason = parser.reason;
    lastMessage.exceptionID = parser.exceptionID;
    return 0;
}

int CWapiClient::post(const CStringT& body, CXMLWapiCommonResponse& parser)
{
    trace(TraceLevel::debug, body);
    return doRequest(opURL, body, parser, METHOD_POST);
}

int CWapiClient::doRequest(const CStringT& url, const CStringT& body, CXMLWapiCommonResponse& parser,
                           METHOD_TYPE method)
{
    CZelHttpClient http;
    return exchange(http, url, body, method) ? judge(http, parser) : 0;
}

int CWapiClient::doRequest(const CStringT& url, const CStringT& body, CStringT& reply, CXMLWapiCommonResponse& parser,
                           METHOD_TYPE method, CStringT)
{
    CZelHttpClient http;
    if (!exchange(http, url, body, method)) return 0;
    reply = http.ResponseContent();
    return judge(http, parser);
}

bool CWapiClient::exchange(CZelHttpClient& http, const CStringT& url, const CStringT& body, METHOD_TYPE method)
{
    const std::string text = kzn::pvutil::stringex::ToUtf8(body);
    const std::string_view piece = text;
    traceLog().writeUtf8(LogLevel::debug, text);
    prepare(http);
    const int status = http.Request(url, transportMethod(method), std::span(&piece, 1), {}, HttpOption::kForm);
    logReply(http);
    keepCause(http);
    networkError = status == CZelHttpClient::kNoConnection ? 1 : 0;
    if (networkError == 0) return true;
    refuse(kNoConnection, url);
    trace(TraceLevel::error, lastMessage.reason);
    traceCause();
    return false;
}

int CWapiClient::callWapi(const CStringT& cred, const CStringT& command)
{
    return guarded([&] {
        FormBody body;
        body.literal(command).encoded("&cred=", cred);
        CXMLWapiMessage parser;
        return post(body, parser);
    });
}

int CWapiClient::WapiProxyCall(const CStringT& cred, const CStringT& command, METHOD_TYPE method, const CStringT& url,
                               const CStringT& headers, int withCred, CStringT& reply)
{
    const ScopeTracer scope(kProxyCall.data());
    const kzn::pvutil::CallScope call(callControl.get(), std::chrono::milliseconds(deadline));
    return contained([&] {
        trace(TraceLevel::debug, command);
        if (findLast(command, "cmd=login") != CStringT::npos) {
            reply = wide(kLoginRefusal);
            return 0;
        }
        const FormBody form = proxiedForm(command, withCred, cred);
        CZelHttpClient http;
        prepare(http);
        const int status = sendProxied(http, transportMethod(method), url, form, headers);
        if (status == kFound) networkError = 0;
        else traceBadStatus(status);
        keepCause(http);
        traceCause();
        logReply(http);
        const int outcome = outcomeOf(http, withCred);
        reply = http.ResponseContent();
        return outcome;
    });
}
