// The client's life: endpoints, copies, destruction, and what it holds.
#include "client/WapiClient.h"

#include <algorithm>
#include <tuple>
#include <typeinfo>

#include "client/ClientLogin.h"
#include "client/Operation.h"
#include "client/Text.h"
#include "client/TraceLog.h"

using namespace wapi;

namespace {

constexpr std::string_view kOperationPath = "/kznconnect/op.do";

// Where the stand-in service listens. These carry no "?" behind them, unlike the derived ones.
constexpr std::string_view kDefaultOp = "http://127.0.0.1:8420/kznconnect/op.do";
constexpr std::string_view kDefaultNullSession = "http://127.0.0.1:8420/kznconnect/nullsession.do";
constexpr std::string_view kDefaultUpload = "http://127.0.0.1:8420/kznconnect/upload.do";
constexpr std::string_view kDefaultDms = "http://127.0.0.1:8420/kzndms";

CStringT joined(const CStringT& text, std::size_t length, std::string_view tail)
{
    CStringT result = text.substr(0, length);
    appendAscii(result, tail);
    return result;
}

// The last "/" that has something behind it; npos where there is none.
std::size_t lastInnerSlash(const CStringT& url)
{
    return url.size() < 2 ? CStringT::npos : url.rfind('/', url.size() - 2);
}

void tick(void* owner, unsigned int timerID)
{
    static_cast<CWapiClient*>(owner)->OnTimer(timerID);
}

// A copy of a text; empty where there is no memory for one.
CStringT copyOf(const CStringT& text) noexcept
{
    try {
        return text;
    } catch (...) {
        return {};
    }
}

}  // namespace

CWapiClient::CWapiClient(CStringT baseURL)
{
    opURL.swap(baseURL);
    contained([this] {
        init();
        return 1;
    });
    timerWindow.create(typeid(CWapiClient).name(), this, &tick);
}

void CWapiClient::init()
{
    if (opURL.empty()) {
        opURL = wide(kDefaultOp);
        nullSessionURL = wide(kDefaultNullSession);
        uploadURL = wide(kDefaultUpload);
        dmsURL = wide(kDefaultDms);
    } else {
        const std::size_t folder = lastInnerSlash(opURL);
        nullSessionURL = joined(opURL, folder, "/nullsession.do?");
        uploadURL = joined(opURL, folder, "/upload.do?");
        dmsURL = joined(opURL, findLast(opURL, kOperationPath), "/kzndms");
    }
    userID.clear();
    networkError = 0;
    contained([this] {  // none is needed
        loginHandler = std::make_shared<CWapiClientLogin>();
        return 1;
    });
    callControl = std::make_shared<kzn::pvutil::CallControl>();  // the last: a client that has one is whole
}

CWapiClient::CWapiClient(const CWapiClient& other)
{
    *this = other;
}

// All that takes memory comes first. Half of two clients would send the credential of the one to the address of the
// other.
CWapiClient& CWapiClient::operator=(const CWapiClient& other)
{
    if (this == &other) return *this;
    const auto held = [](auto& client) {
        return std::tie(client.opURL, client.nullSessionURL, client.uploadURL, client.dmsURL, client.userID,
                        client.namespaceID, client.rootCred, client.lastMessage, client.networkErrorText,
                        client.transferProgress, client.refreshListener, client.exchangeListener);
    };
    const auto copy = [&] {
        auto control = callControl;
        if (!control && other.callControl) control = std::make_shared<kzn::pvutil::CallControl>();
        auto copies = std::apply([](const auto&... each) { return std::tuple(each...); }, held(other));
        held(*this) = std::move(copies);
        if (!callControl) callControl = std::move(control);
        return 1;
    };
    if (!contained(copy, [this](const char* reason) { keepFailure(reason); })) return *this;
    networkError = other.networkError;
    networkErrorKind = other.networkErrorKind;
    deadline = other.deadline;
    loginHandler = other.loginHandler;
    refreshInterval = other.refreshInterval;
    timerWindow.share(other.timerWindow, this);
    return *this;
}

CWapiClient::~CWapiClient()
{
    timerWindow.destroy();
    loginHandler.reset();
}

void CWapiClient::rearmTimer() noexcept
{
    constexpr unsigned kRefreshTimer = 1;
    timerWindow.setTimer(kRefreshTimer, refreshInterval);
}

void CWapiClient::keepFailure(const char* reason) noexcept
{
    lastMessage.clear();
    try {
        lastMessage.reason = wide(reason);
    } catch (...) {
        appendAscii(lastMessage.reason, "memory");  // short enough to take none
    }
}

CStringT CWapiClient::getUserID()
{
    return copyOf(userID);
}

CStringT CWapiClient::getNamespaceID()
{
    return copyOf(namespaceID);
}

const CStringT& CWapiClient::getRootCred() const
{
    return rootCred;
}

void CWapiClient::setRootCred(const CStringT& cred)
{
    const auto keep = [&] {
        rootCred = cred;
        return 1;
    };
    contained(keep, [this](const char* reason) { keepFailure(reason); });
}

WAPIMESSAGE CWapiClient::GetLstMsg()
{
    try {
        return lastMessage;
    } catch (...) {
        return {};
    }
}

int CWapiClient::getNetworkError() const
{
    return networkError;
}

CWapiClient::NETWORK_ERROR CWapiClient::getNetworkErrorKind() const
{
    return networkErrorKind;
}

CStringT CWapiClient::getNetworkErrorText() const
{
    return copyOf(networkErrorText);
}

unsigned int CWapiClient::getRefreshInterval() const
{
    return refreshInterval;
}

const CStringT& CWapiClient::getOpURL() const
{
    return opURL;
}

const CStringT& CWapiClient::getNullSessionURL() const
{
    return nullSessionURL;
}

const CStringT& CWapiClient::getUploadURL() const
{
    return uploadURL;
}

const CStringT& CWapiClient::getDmsURL() const
{
    return dmsURL;
}

void CWapiClient::onTransferProgress(TransferProgress progress)
{
    transferProgress = std::move(progress);
}

void CWapiClient::onRefresh(RefreshListener listener)
{
    refreshListener = std::move(listener);
}

void CWapiClient::onExchange(ExchangeListener listener)
{
    exchangeListener = std::move(listener);
}

void CWapiClient::cancel() noexcept
{
    if (callControl) callControl->cancel();
}

void CWapiClient::setDeadline(unsigned int milliseconds)
{
    deadline = milliseconds;
}

void CWapiClient::setLog(int maximumLevel)
{
    constexpr int kEverything = static_cast<int>(LogLevel::debug);
    traceLog().switchOn(maximumLevel > 0);
    traceLog().setMaximum(std::min(maximumLevel, kEverything));
}

const char* CWapiClient::version()
{
    return PVWAPI_VERSION;
}
