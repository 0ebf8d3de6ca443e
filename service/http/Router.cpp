#include "service/http/Router.h"

#include <array>
#include <iostream>
#include <utility>

#include "service/base/Process.h"
#include "service/base/Refusal.h"
#include "service/base/Text.h"
#include "service/commands/Reply.h"
#include "service/control/Control.h"
#include "service/control/Guard.h"
#include "service/http/Errand.h"
#include "service/http/Ready.h"
#include "service/journal/Journal.h"
#include "service/rules/Icons.h"
#include "service/web/Files.h"

namespace service::http {

namespace {

constexpr std::string_view kWirePaths = "/kzn";  // what a host asks, and the journal keeps
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
    return refusal(404, "there is nothing at " + inQuotes(path), exceptionid::kUnknownEndpoint);
}

Response forbidden(const RequestHead& head, const std::string& why)
{
    if (head.target.starts_with(control::kControlPath)) return control::errorResponse(403, why);
    return refusal(403, why, exceptionid::kAccessDenied);
}

constexpr const char* kAnyMethod = "GET, HEAD, POST";

bool isAnyMethod(std::string_view method)
{
    return method == "GET" || method == "HEAD" || method == "POST";
}

}  // namespace

struct Router::Place {
    std::string_view path;
    bool folder;              // what stands below is meant
    std::string_view method;  // empty where any is taken
    void (Router::*answer)(const ErrandPtr& errand) const;

    // A get whose body stays away is a get.
    bool takes(std::string_view wanted) const
    {
        return method.empty() || method == (wanted == "HEAD" ? "GET" : wanted);
    }

    std::string methods() const { return method == "GET" ? "GET, HEAD" : std::string(method); }
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
        Place{"/", false, "GET", &Router::page},
        Place{web::kFolder, true, "GET", &Router::page},
        Place{control::kControlPath, true, "", &Router::controlled},
    };
    for (const Place& place : kPlaces) {
        if (place.folder ? path.starts_with(place.path) : path == place.path) return &place;
    }
    return nullptr;
}

std::optional<Response> Router::refused(const RequestHead& head) const
{
    const auto begun = std::chrono::steady_clock::now();
    std::optional<Response> refused = refusalOf(head);
    if (refused) note({head.method, head.target, {}, {}}, *refused, begun);
    return refused;
}

std::optional<Response> Router::refusalOf(const RequestHead& head) const
{
    const std::string foreign = control::whyForeign(head, settings_.port);
    if (!foreign.empty()) return forbidden(head, foreign);
    if (control_ != nullptr && head.target.starts_with(control::kControlPath)) return withoutToken(head);
    const Place* const place = placeOf(pathOf(head.target));
    const bool any = place == nullptr || place->method.empty();
    if (any ? isAnyMethod(head.method) : place->takes(head.method)) return std::nullopt;
    return wrongMethod(any ? kAnyMethod : place->methods());
}

std::optional<Response> Router::withoutToken(const RequestHead& head) const
{
    if (control::bearsToken(head.authorization, control_->token())) return std::nullopt;
    return control::errorResponse(401,
                                  "this needs the header \"Authorization: Bearer TOKEN\" with the control's token");
}

void Router::tidyUp() const
{
    if (crew_ != nullptr) crew_->aside(returnMemory);
}

std::uint64_t Router::bodyLimit(std::string_view target) const
{
    if (target.starts_with(control::kControlPath)) return kControlBytes;
    return pathOf(target) == kUploadPath ? settings_.maxUpload + kUploadFieldBytes : kFormBytes;
}

Response Router::answer(const Request& request) const
{
    Response answer;
    answerLater(request, [&answer](Response response) { answer = std::move(response); });
    return answer;
}

void Router::answerLater(Request request, Reply reply) const
{
    const auto errand = std::make_shared<Errand>(*this, std::move(request), std::move(reply));
    const Place* const place = placeOf(pathOf(errand->request().target));
    if (place == nullptr) return errand->reply(nothingAt(pathOf(errand->request().target)));
    if (!place->takes(errand->request().method)) return errand->reply(wrongMethod(place->methods()));
    (this->*place->answer)(errand);
}

void Router::note(Request request, const Response& response, Moment begun) const
{
    if (journal_ == nullptr || !request.target.starts_with(kWirePaths)) return;
    try {
        journal::Heard heard = journal::heardOf(std::move(request), response);
        heard.time = settings_.clock.now();
        heard.took = std::chrono::steady_clock::now() - begun;
        journal_->add(std::move(heard));
    } catch (const std::exception& error) {
        // The reply goes out all the same.
        std::clog << std::string("a request is not in the journal: ") + error.what() + '\n' << std::flush;
    }
}

void Router::operation(const ErrandPtr& errand) const
{
    errand->form();
}

void Router::upload(const ErrandPtr& errand) const
{
    errand->upload();
}

void Router::icon(const ErrandPtr& errand) const
{
    errand->icon();
}

// Clients know these two addresses. Whoever asks there is told what is missing, in the form that it can read.
void Router::nullSession(const ErrandPtr& errand) const
{
    errand->reply(notServed("this service opens no sessions without a user: every request goes to /kznconnect/op.do"));
}

void Router::documents(const ErrandPtr& errand) const
{
    errand->reply(notServed("this service keeps no documents: there is nothing behind /kzndms"));
}

void Router::ready(const ErrandPtr& errand) const
{
    Response response;
    response.contentType = kJsonType;
    response.body = readyText(settings_) + '\n';
    errand->reply(std::move(response));
}

void Router::page(const ErrandPtr& errand) const
{
    const std::string_view path = pathOf(errand->request().target);
    const web::File* const file = web::findFile(path == "/" ? web::kStart : path.substr(web::kFolder.size()));
    errand->reply(file == nullptr ? nothingAt(path) : web::responseOf(*file));
}

void Router::controlled(const ErrandPtr& errand) const
{
    if (control_ == nullptr) return errand->reply(nothingAt(pathOf(errand->request().target)));
    errand->control();
}

}  // namespace service::http
