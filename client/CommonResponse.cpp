#include "client/CommonResponse.h"

#include <string>

#include "client/Text.h"

using namespace wapi;

namespace {

constexpr unsigned kMessage = 10;

CStringT path(std::string_view prefix, std::string_view list, std::string_view relative = {})
{
    CStringT path;
    path.reserve(prefix.size() + list.size() + relative.size());
    for (const std::string_view piece : {prefix, list, relative}) appendAscii(path, piece);
    return path;
}

}  // namespace

CXMLWapiCommonResponse::CXMLWapiCommonResponse()
{
    select("/kznapi/response/", {{"result/", &result}, {"exceptionID/", &exceptionID}, {"reason/", &reason}});
    listen(kMessage, "/kznapi/", "messageStrings/message/", {{"", &message}});
}

void CXMLWapiCommonResponse::read(const CStringT& reply)
{
    try {
        ParseXML(reply);
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

void CXMLWapiCommonResponse::select(std::string_view prefix, std::initializer_list<Field> fields)
{
    for (const Field& field : fields) AddTextSelecter(path(prefix, field.path), field.text);
}

void CXMLWapiCommonResponse::listen(unsigned id, std::string_view prefix, std::string_view list,
                                    std::initializer_list<Field> fields)
{
    AddNodeListEventListener(id, path(prefix, list));
    for (const Field& field : fields) AddTextSelecter(path(prefix, list, field.path), field.text);
}
