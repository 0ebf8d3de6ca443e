// What every reply has in common, and how a reply is put together from parts.
#pragma once

#include <initializer_list>
#include <vector>

#include "pvutil/HttpClient.h"
#include "pvutil/XmlHandler.h"

/// Where a part of a reply hangs: below the reply itself, or below a step of a script.
using EXPAT_EX::PathPiece;

constexpr PathPiece kDirectReply = "/kznapi/return/";
constexpr PathPiece kScriptReply = "/kznapi/return/step/";

/// A repeated element of a reply that becomes records: it names the element and its texts when it is made, and builds a
/// record each time the element ends.
class CWapiReplyPart {
public:
    CWapiReplyPart() = default;
    CWapiReplyPart(const CWapiReplyPart&) = delete;  // the reply holds the addresses of its texts
    CWapiReplyPart& operator=(const CWapiReplyPart&) = delete;

    virtual void onEnd(unsigned id) = 0;

protected:
    ~CWapiReplyPart() = default;
};

/// The base of every reply: its outcome, and the messages that came with it.
class CXMLWapiCommonResponse : public EXPAT_EX::CXMLHandler {
public:
    CXMLWapiCommonResponse();

    /// Reads the whole reply, from its bytes where these are UTF-8. One that goes beyond a limit has not succeeded,
    /// whatever it says, and has its reason from here.
    void read(const kzn::pvutil::CZelHttpClient& http);

    /// "SUCCESS" without regard to case. A reply without a result has not succeeded.
    bool succeeded() const noexcept;

    void OnEndNodeListEvent(unsigned id) override;

    /// One text below a list's path, or below a prefix.
    struct Field {
        PathPiece path;
        CStringT* text;
    };

    /// Selects the texts of single elements below `prefix`.
    void select(PathPiece prefix, std::initializer_list<Field> fields);

    /// Selects the texts of an element that repeats, and tells every part when one ends.
    void listen(unsigned id, PathPiece prefix, PathPiece list, std::initializer_list<Field> fields);

    void add(CWapiReplyPart& part) { parts_.push_back(&part); }

    CStringT result;
    CStringT exceptionID;
    CStringT reason;
    CStringT messages;  ///< each message with "<br>" behind it
    CStringT message;   ///< the latest of them

private:
    std::vector<CWapiReplyPart*> parts_;
};

/// A reply that may carry a credential.
class CXMLWapiMessage : public CXMLWapiCommonResponse {
public:
    CXMLWapiMessage() { select("/kznapi/", {{"securityContext/cred/", &cred}}); }

    CStringT cred;
};

/// A request that changes something is answered in that same shape.
using CXMLWapiSetResponse = CXMLWapiMessage;
