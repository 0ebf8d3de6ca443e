#include "client/CommonResponse.h"

#include <string>

#include "client/Text.h"

using namespace wapi;

namespace {

constexpr unsigned kMessage = 10;

}  // namespace

CXMLWapiCommonResponse::CXMLWapiCommonResponse()
{
    select("/kznapi/response/", {{"result/", &result}, {"exceptionID/", &exceptionID}, {"reason/", &reason}});
    listen(kMessage, "/kznapi/", "messageStrings/message/", {{"", &message}});
}

void CXMLWapiCommonResponse::read(const kzn::pvutil::CZelHttpClient& http)
{
    try {
        if (std::string_view utf8; http.ResponseUtf8(utf8)) ParseUtf8(utf8);
        else ParseXML(http.ResponseContent());
    } catch (const EXPAT_EX::XmlLimitPassed& limit) {
        result.clear();
        reason = wide(limit.what());
    }
}

bool CXMLWapiCommonResponse::succeeded() const noexcept
{
    return equalsIgnoringCase(result, "SUCCESS");
}

void CXMLWapiCommonResponse::OnEndNodeListEvent(unsigned id)
{
    if (id == kMessage) {
        messages += message;
        appendAscii(messages, "<br>");
    }
    for (CWapiReplyPart* part : parts_) part->onEnd(id);
}

void CXMLWapiCommonResponse::select(PathPiece prefix, std::initializer_list<Field> fields)
{
    for (const Field& field : fields) AddTextSelecter({prefix, field.path}, field.text);
}

void CXMLWapiCommonResponse::listen(unsigned id, PathPiece prefix, PathPiece list, std::initializer_list<Field> fields)
{
    AddNodeListEventListener(id, {prefix, list});
    for (const Field& field : fields) AddTextSelecter({prefix, list, field.path}, field.text);
}
