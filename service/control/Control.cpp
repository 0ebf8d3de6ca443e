#include "service/control/Control.h"

#include <array>
#include <iostream>
#include <optional>
#include <utility>

#include "service/base/Refusal.h"
#include "service/base/Text.h"
#include "service/control/Handlers.h"
#include "service/faults/Faults.h"
#include "service/http/Form.h"
#include "service/journal/Journal.h"
#include "service/store/Database.h"
#include "service/store/ServiceSettings.h"

namespace service::control {

namespace {

constexpr std::string_view kJournalPath = "journal";
constexpr std::string_view kLogPath = "log";  // a host's, which is read and not kept

enum class Kind { one, folder };

struct Resource {
    std::string_view method;
    std::string_view path;
    Kind kind;  // of a folder, what stands behind the path is a name
    Json (*run)(Desk& desk, const Call& call);
};

Json list(Desk& desk, const Call& call);

constexpr std::array kResources{
    Resource{"GET", "", Kind::one, list},
    Resource{"POST", "reset", Kind::one, reset},
    Resource{"POST", "seed", Kind::one, seedWith},
    Resource{"GET", "state", Kind::one, exportState},
    Resource{"PUT", "state", Kind::one, importState},
    Resource{"GET", "clock", Kind::one, showClock},
    Resource{"PUT", "clock", Kind::one, setClock},
    Resource{"DELETE", "clock", Kind::one, machineClock},
    Resource{"POST", "clock/advance", Kind::one, advanceClock},
    Resource{"GET", "policy", Kind::one, showPolicy},
    Resource{"PUT", "policy", Kind::one, changePolicy},
    Resource{"GET", "faults", Kind::one, showFaults},
    Resource{"POST", "faults", Kind::one, addFaults},
    Resource{"DELETE", "faults", Kind::one, clearFaults},
    Resource{"DELETE", "faults/", Kind::folder, clearFault},
    Resource{"GET", "overview", Kind::one, showOverview},
    Resource{"GET", "journal", Kind::one, listExchanges},
    Resource{"DELETE", "journal", Kind::one, clearExchanges},
    Resource{"GET", "journal/stream", Kind::one, followExchanges},
    Resource{"GET", "journal/", Kind::folder, showExchange},
    Resource{"POST", "log", Kind::one, readLog},
};

Json list(Desk& /*desk*/, const Call& /*call*/)
{
    Json resources = Json::array();
    for (const Resource& resource : kResources) {
        const std::string tail = resource.kind == Kind::folder ? "NAME" : "";
        resources.push_back(std::string(resource.method) + ' ' + std::string(kControlPath) +
                            std::string(resource.path) + tail);
    }
    return Json{{"resources", std::move(resources)}};
}

bool isAt(const Resource& resource, std::string_view path)
{
    if (resource.kind == Kind::one) return path == resource.path;
    return path.starts_with(resource.path) && path.size() > resource.path.size();
}

const Resource& findResource(const std::string& method, std::string_view path)
{
    std::string others;
    for (const Resource& resource : kResources) {
        if (!isAt(resource, path)) continue;
        if (resource.method == method) return resource;
        others += (others.empty() ? "" : ", ") + std::string(resource.method);
    }
    if (others.empty())
        throw ControlError(404, "there is nothing at " + service::inQuotes(std::string(kControlPath).append(path)));
    throw ControlError(405, "this takes " + others, others);
}

std::string_view pathOf(const http::Request& request)
{
    return http::pathOf(request.target).substr(kControlPath.size());
}

Call callOf(const http::Request& request, const Resource& resource, std::string_view path)
{
    Call call;
    call.name = path.substr(resource.path.size());
    call.query = http::Form::fromUrlEncoded(http::queryOf(request.target));
    call.organisation = call.query.text("organisation");
    if (request.contentType.starts_with("text/plain")) {
        call.text = request.body;
    } else if (!request.body.empty()) {
        call.body = parseJson(request.body);
    }
    return call;
}

http::Response jsonResponse(unsigned status, const Json& body)
{
    http::Response response;
    response.status = status;
    response.contentType = http::kJsonType;
    response.body = body.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
    return response;
}

// The answer is the first event.
http::Response eventResponse(http::Events& events, const Json& answer)
{
    http::Response response;
    response.contentType = "text/event-stream";
    response.body = "event: begin\ndata: " + answer.dump() + "\n\n";
    response.events = &events;
    return response;
}

http::Response responseOf(const Desk& desk, const Json& answer)
{
    return desk.events == nullptr ? jsonResponse(200, answer) : eventResponse(*desk.events, answer);
}

}  // namespace

http::Response errorResponse(unsigned status, const std::string& why)
{
    http::Response response = jsonResponse(status, Json{{"error", why}});
    if (status == 401) response.headers.emplace_back("WWW-Authenticate", "Bearer");
    return response;
}

Control::Control(store::Database& database, Settings& settings, faults::Faults& faults, Json seed, std::string token,
                 journal::Journal* journal)
    : settings_(settings), faults_(faults), journal_(journal), seed_(std::move(seed)), token_(std::move(token))
{
    follow(database);
}

std::string Control::begin(store::Database& database)
{
    return seed_.is_null() ? std::string() : seed::fillEmpty(database, settings_, seed_, hashes_);
}

// Clock and faults follow the data file.
void Control::follow(store::Database& database)
{
    const store::Unlimited whole(database);  // what was asked is done, and is not to be done again
    settings_.clock.setOffset(store::clockOffset(database));
    faults_.reload(database);
}

bool Control::onlyReads(const http::Request& request)
{
    return request.method == "GET" || pathOf(request) == kLogPath;
}

bool Control::asksForJournal(const http::Request& request)
{
    return pathOf(request).starts_with(kJournalPath);
}

// What is changed of the settings counts when it is in the data file, and not before.
http::Response Control::carryOut(store::Database& database, const http::Request& request)
{
    const std::string_view path = pathOf(request);
    const Resource& resource = findResource(request.method, path);
    const Call call = callOf(request, resource, path);
    Settings settings = settings_;
    const long long last = journal_ == nullptr ? 0 : journal_->totals().last;
    Desk desk{database, settings, seed_, hashes_, journal_, last, false, nullptr};
    if (onlyReads(request)) {
        const store::Snapshot snapshot(database);
        return responseOf(desk, resource.run(desk, call));
    }
    store::Transaction transaction(database);
    const Json answer = resource.run(desk, call);
    transaction.commit();
    if (desk.isCleared) journal_->cleared();
    return responseOf(desk, answer);
}

http::Response Control::answer(store::Database& database, const http::Request& request)
{
    http::Response response;
    try {
        response = attempt(database, request);
        if (!onlyReads(request)) follow(database);
    } catch (const std::exception& error) {
        std::clog << std::string("a request failed: ") + error.what() + '\n' << std::flush;
        response = errorResponse(500, "the service could not carry out the request");
    } catch (const store::OnlyReads&) {
        std::clog << "a request failed: a resource that only reads was to write\n" << std::flush;
        response = errorResponse(500, "the service could not carry out the request");
    }
    response.operation.command = "control";
    return response;
}

http::Response Control::attempt(store::Database& database, const http::Request& request)
{
    try {
        return carryOut(database, request);
    } catch (const ControlError& error) {
        http::Response response = errorResponse(error.status(), error.what());
        if (!error.allowed().empty()) response.headers.emplace_back("Allow", error.allowed());
        return response;
    } catch (const JsonError& error) {
        return errorResponse(400, error.what());
    } catch (const Refusal& refusal) {
        return errorResponse(400, refusal.what());
    }
}

}  // namespace service::control
