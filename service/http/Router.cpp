#include "service/http/Router.h"

#include "service/base/Refusal.h"
#include "service/base/Text.h"
#include "service/commands/Commands.h"
#include "service/commands/Reply.h"
#include "service/http/Form.h"
#include "service/http/Multipart.h"
#include "service/rules/Icons.h"

namespace service::http {

namespace {

constexpr std::string_view kOperationPath = "/kznconnect/op.do";
constexpr std::string_view kUploadPath = "/kznconnect/upload.do";
constexpr std::uint64_t kFormBytes = 16ULL * 1024 * 1024;
constexpr std::uint64_t kUploadFieldBytes = 64ULL * 1024;  // the other fields of an upload

std::string_view pathOf(std::string_view target)
{
    return target.substr(0, target.find('?'));
}

std::string_view queryOf(std::string_view target)
{
    const std::size_t at = target.find('?');
    return at == std::string_view::npos ? std::string_view() : target.substr(at + 1);
}

}  // namespace

Response refusal(unsigned status, std::string_view reason, std::string_view exceptionID)
{
    Response response;
    response.status = status;
    response.body = commands::failureText(reason, exceptionID);
    return response;
}

std::uint64_t Router::bodyLimit(std::string_view target) const
{
    return pathOf(target) == kUploadPath ? settings_.maxUpload + kUploadFieldBytes : kFormBytes;
}

Response Router::answer(const Request& request) const
{
    const std::string_view path = pathOf(request.target);
    if (path == kOperationPath) return operation(request);
    if (path == kUploadPath && request.isPost) return upload(request);
    if (path.starts_with(rules::kIconPath) && !request.isPost) return icon(request.target);
    return refusal(404, "there is nothing at " + quoted(path), exceptionid::kUnknownEndpoint);
}

// The form comes in the body of a post, or after the "?" of a get.
Response Router::operation(const Request& request) const
{
    Response response;
    try {
        const Form form =
            Form::fromUrlEncoded(request.isPost ? std::string_view(request.body) : queryOf(request.target));
        response.body = commands::answerForm(database_, settings_, form);
    } catch (const Refusal& failure) {
        response.body = commands::failureText(failure.what(), failure.exceptionID());
    }
    return response;
}

Response Router::upload(const Request& request) const
{
    Response response;
    try {
        const MultipartForm parts = readMultipart(request.contentType, request.body);
        response.body = commands::answerForm(database_, settings_, parts.form, parts.hasFile ? &parts.file : nullptr);
    } catch (const Refusal& failure) {
        response.body = commands::failureText(failure.what(), failure.exceptionID());
    }
    return response;
}

// A picture has no reply around it, so the status tells what became of it; the body of a failure says why.
Response Router::icon(std::string_view target) const
{
    try {
        const std::string_view name = pathOf(target).substr(rules::kIconPath.size());
        const Form form = Form::fromUrlEncoded(queryOf(target));
        Response response;
        response.body = commands::iconContent(database_, settings_, std::string(name), form.text("cred"));
        response.contentType = rules::pictureType(response.body);
        return response;
    } catch (const Refusal& failure) {
        const bool missing = failure.exceptionID() == std::string_view(exceptionid::kNoSuchObject);
        return refusal(missing ? 404 : 403, failure.what(), failure.exceptionID());
    }
}

}  // namespace service::http
