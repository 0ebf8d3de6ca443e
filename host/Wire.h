// What goes over the wire, for whoever wants to see it: on standard error as it happens, or instead of it happening.
#pragma once

#include <atomic>
#include <string>

#include "client/WapiClient.h"
#include "host/Json.h"
#include "host/Masking.h"

namespace host {

/// How much of it is shown.
struct Sight {
    int verbosity = 0;     ///< 1 a line for each exchange, 2 request and reply too
    bool isDry = false;    ///< nothing is sent; the first request is kept instead
    bool secrets = false;  ///< as they are
};

/// Watches a client's exchanges while both live.
class Wire {
public:
    Wire(CWapiClient& client, const Sight& sight);
    Wire(const Wire&) = delete;
    Wire& operator=(const Wire&) = delete;
    ~Wire();

    Secrets& secrets() { return secrets_; }
    const Secrets& secrets() const { return secrets_; }

    /// From now on no exchange begins, until they are let through again. From any thread.
    void stop() { stopped_ = true; }
    void goOn() { stopped_ = false; }
    bool isStopped() const { return stopped_; }

    /// Whether standard error is told of each exchange.
    bool tells() const { return sight_.verbosity > 0; }

    /// Whether the last exchange brought a whole reply.
    bool replied() const { return replied_; }
    /// Its HTTP status, and whether it says what the service made of the request.
    int status() const { return status_; }
    bool isAnswer() const { return isAnswer_; }

    /// The request that was not sent, as text or as JSON; empty where none was made.
    const std::string& request() const { return request_; }
    const Json& requestAsJson() const { return requestAsJson_; }

private:
    bool begins(const CWapiClient::Exchange& exchange);
    void ends(const CWapiClient::Exchange& exchange);
    void keep(const CWapiClient::Exchange& exchange);
    std::string headOf(const CWapiClient::Exchange& exchange) const;
    std::string addressOf(const CWapiClient::Exchange& exchange) const;
    std::string bodyOf(const CWapiClient::Exchange& exchange) const;
    std::string fieldsOf(const CWapiClient::Exchange& exchange) const;
    std::string readable(const std::string& text) const;

    CWapiClient& client_;
    Sight sight_;
    Secrets secrets_;
    std::atomic<bool> stopped_ = false;
    bool replied_ = false;
    int status_ = 0;
    bool isAnswer_ = false;
    std::string request_;
    Json requestAsJson_;
};

}  // namespace host
