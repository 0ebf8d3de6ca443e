#include "service/http/Message.h"

#include "service/base/Refusal.h"
#include "service/commands/Reply.h"

namespace service::http {

Response refusal(unsigned status, std::string_view reason, std::string_view exceptionID)
{
    Response response;
    response.status = status;
    response.body = commands::failureText(reason, exceptionID);
    return response;
}

Response wrongMethod(const std::string& allowed)
{
    constexpr unsigned kMethodNotAllowed = 405;
    Response response =
        refusal(kMethodNotAllowed, "only these methods are answered here: " + allowed, exceptionid::kBadRequest);
    response.headers.emplace_back("Allow", allowed);
    return response;
}

std::string_view pathOf(std::string_view target)
{
    return target.substr(0, target.find('?'));
}

std::string_view queryOf(std::string_view target)
{
    const std::size_t at = target.find('?');
    return at == std::string_view::npos ? std::string_view() : target.substr(at + 1);
}

}  // namespace service::http
