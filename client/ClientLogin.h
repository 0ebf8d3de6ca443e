// What a sign-in leads to when its exchange completes by itself.
#pragma once

#include "pvutil/HttpClient.h"
#include "records/WapiMessage.h"

/// Told when an exchange that nobody waits for is over.
class CHttpCompletionListener {
public:
    virtual ~CHttpCompletionListener() = default;

    /// `error` is 0 where a reply came, which `response` then holds.
    virtual void OnHttpCompleted(unsigned long error, const kzn::pvutil::CZelHttpClient* response) = 0;
};

/// The client's own listener. Every exchange of the client is waited for, so nothing drives it; it makes a message of
/// what it is told, and changes nothing in the client.
class CWapiClientLogin : public CHttpCompletionListener {
public:
    /// Writes what came and discards the message. Never throws.
    void OnHttpCompleted(unsigned long error, const kzn::pvutil::CZelHttpClient* response) override;

    /// Code 1 for a sign-in that succeeded; code 0 with the reason and the exception ID of the reply, or the library's
    /// own where there is none.
    WAPIMESSAGE messageOf(unsigned long error, const kzn::pvutil::CZelHttpClient* response);

private:
    CStringT reply_;
};
