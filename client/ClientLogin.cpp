#include "client/ClientLogin.h"

#include "client/CommonResponse.h"
#include "client/Text.h"
#include "client/Trace.h"

using namespace wapi;

namespace {

constexpr const char* kName = "CWapiClientLogin::OnHttpCompleted";

}  // namespace

void CWapiClientLogin::OnHttpCompleted(unsigned long error, const kzn::pvutil::CZelHttpClient* response)
{
    const ScopeTracer scope(kName);
    try {
        messageOf(error, response);
    } catch (...) {  // no memory for a message that nobody reads
    }
}

WAPIMESSAGE CWapiClientLogin::messageOf(unsigned long error, const kzn::pvutil::CZelHttpClient* response)
{
    WAPIMESSAGE message;
    if (error != 0 || !response) {
        message.reason = wide("dwError!=0 || pResponse==NULL");
        message.exceptionID = wide(kName);
        return message;
    }
    reply_ = response->ResponseContent();
    CXMLWapiMessage parser;
    parser.read(*response);
    trace(TraceLevel::debug, reply_);
    if (parser.succeeded()) {
        message.code = 1;
    } else {
        message.reason = parser.reason;
        message.exceptionID = parser.exceptionID;
    }
    return message;
}
