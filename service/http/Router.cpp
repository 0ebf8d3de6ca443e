#include "service/http/Router.h"

#include <array>

#include "service/base/Refusal.h"
#include "service/base/Text.h"
#include "service/commands/Commands.h"
#include "service/commands/Reply.h"
#include "service/control/Control.h"
#include "service/control/Guard.h"
#include "service/faults/Faults.h"
#include "service/http/Form.h"
#include "service/http/Multipart.h"
#include "service/http/Ready.h"
#include "service/rules/Icons.h"

namespace service::http {

namespace {

constexpr std::string_view kUploadPath = "/kznconnect/upload.do";
constexpr std::uint64_t kFormBytes = 16ULL * 1024 * 1024;
constexpr std::uint64_t kControlBytes = 256ULL * 1024 * 1024;
constexpr std::uint64_t kUploadFieldBytes = 64ULL * 1024;  // the other fields of an upload

Response notServed(std::string_view reason)
{
    Response response;
    response.body = commands::failureText(reason, exceptionid::kUnknownEndpoint);
    return response;
}

Response nothingAt(std::string_view path)
{
    return refusal(404, "there is nothing at " + quoted(path), exceptionid::kUnknownEndpoint);
}

Response forbidden(const RequestHead& head, const std::string& why)
{
    if (head.target.starts_with(control::kControlPath)) return control::errorResponse(403, why);
    return refusal(403, why, exceptionid::kAccessDenied);
}

}  // namespace

struct Router::Place {
    std::string_view path;
    bool folder;              // what stands below is meant
    std::string_view method;  // empty where any is taken
    Response (Router::*answer)(const Request& request) const;
};

const Router::Place* Router::placeOf(std::string_view path)
{
    static constexpr std::array kPlaces{
        Place{"/kznconnect/op.do", false, "", &Router::operation},
        Place{kUploadPath, false, "POST", &Router::upload},
        Place{"/kznconnect/nullsession.do", false, "", &Router::nullSession},
        Place{rules::kIconPath, true, "GET", &Router::icon},
        Place{"/kzndms", false, "", &Router::documents},
        Place{"/kzndms/", true, "", &Router::documents},
        Place{"/ready", false, "GET", &Router::ready},
        Place{control::kControlPath, true, "", &Router::controlled},
    };
    for (const Place& place : kPlaces) {
        if (place.folder ? path.starts_with(place.path) : path == place.path) return &place;
    }
    return nullptr;
}

std::optional<Response> Router::refused(const RequestHead& head) const
{
    if (!control::isOwnHost(head.host, settings_.port))
        return forbidden(head, "the Host header does not name this service");
    if (!control::isOwnOrigin(head.origin, settings_.port) || !control::isOwnSite(head.fetchSite)) {
        return forbidden(head, "a page of another site is behind this request");
    }
    if (control_ != nullptr && head.target.starts_with(control::kControlPath)) return withoutToken(head);
    if (head.method == "POST" || head.method == "GET" || head.method == "HEAD") return std::nullopt;
    Response response = refusal(405, "only get, head and post are answered here", exceptionid::kBadRequest);
    response.headers.emplace_back("Allow", "GET, HEAD, POST");
    return response;
}

std::optional<Response> Router::withoutToken(const RequestHead& head) const
{
    if (control::bearsToken(head.authorization, control_->token())) return std::nullopt;
    return control::errorResponse(401,
                                  "this needs the header \"Authorization: Bearer TOKEN\" with the control's token");
}

std::uint64_t Router::bodyLimit(std::string_view target) const
{
    if (target.starts_with(control::kControlPath)) return kControlBytes;
    return pathOf(target) == kUploadPath ? settings_.maxUpload + kUploadFieldBytes : kFormBytes;
}

Response Router::answer(const Request& request) const
{
    const std::string_view path = pathOf(request.target);
    const Place* const place = placeOf(path);
    const bool isHead = request.method == "HEAD";  // answered as a get whose body stays away
    if (place != nullptr && (place->method.empty() || place->method == (isHead ? "GET" : request.method))) {
        return (this->*place->answer)(request);
    }
    return nothingAt(path);
}

// A fault may strike the call; true where that stands in the place of carrying it out.
bool Router::isStruckDown(Response& response) const
{
    if (faults_ == nullptr) return false;
    response.fault = faults_->strike(response.operation);
    if (!response.fault || !faults::isInstead(response.fault->kind)) return false;
    response.body = commands::failureText(response.fault->reason, response.fault->exceptionID);
    return true;
}

void Router::carryOut(Response& response, const Form& form, const Upload* upload) const
{
    response.operation = {form.text("cmd"), form.text("task")};
    if (!isStruckDown(response)) response.body = commands::answerForm(database_, settings_, form, upload);
}

// The form comes in the body of a post, or after the "?" of a get.
Response Router::operation(const Request& request) const
{
    Response response;
    try {
        carryOut(response,
                 Form::fromUrlEncoded(request.isPost() ? std::string_view(request.body) : queryOf(request.target)),
                 nullptr);
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
        carryOut(response, parts.form, parts.hasFile ? &parts.file : nullptr);
    } catch (const Refusal& failure) {
        response.body = commands::failureText(failure.what(), failure.exceptionID());
    }
    return response;
}

// A picture has no reply around it, so the status tells what became of it; the body of a failure says why.
Response Router::icon(const Request& request) const
{
    Response response;
    response.operation.command = "icon";
    if (isStruckDown(response)) return response;
    try {
        const std::string_view name = pathOf(request.target).substr(rules::kIconPath.size());
        const Form form = Form::fromUrlEncoded(queryOf(request.target));
        response.body = commands::iconContent(database_, settings_, std::string(name), form.text("cred"));
        response.contentType = rules::pictureType(response.body);
    } catch (const Refusal& failure) {
        const bool missing = failure.exceptionID() == std::string_view(exceptionid::kNoSuchObject);
        response.status = missing ? 404 : 403;
        response.body = commands::failureText(failure.what(), failure.exceptionID());
    }
    return response;
}

// Clients know these two addresses. Whoever asks there is told what is missing, in the form that it can read.
Response Router::nullSession(const Request& /*request*/) const
{
    return notServed("this service opens no sessions without a user: every request goes to /kznconnect/op.do");
}

Response Router::documents(const Request& /*request*/) const
{
    return notServed("this service keeps no documents: there is nothing behind /kzndms");
}

Response Router::ready(const Request& /*request*/) const
{
    Response response;
    response.contentType = kJsonType;
    response.body = readyText(settings_) + '\n';
    return response;
}

Response Router::controlled(const Request& request) const
{
    return control_ == nullptr ? nothingAt(pathOf(request.target)) : control_->answer(request);
}

}  // namespace service::http
