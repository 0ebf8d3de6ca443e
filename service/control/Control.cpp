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
#include "service/store/Database.h"
#include "service/store/ServiceSettings.h"

namespace service::control {

namespace {

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
        throw ControlError(404, "there is nothing at " + service::quoted(std::string(kControlPath).append(path)));
    throw ControlError(405, "this takes " + others, others);
}

Call callOf(const http::Request& request, const Resource& resource, std::string_view path)
{
    Call call;
    call.name = path.substr(resource.path.size());
    const http::Form query = http::Form::fromUrlEncoded(http::queryOf(request.target));
    call.organisation = query.text("organisation");
    if (!request.body.empty()) call.body = parseJson(request.body);
    return call;
}

http::Response jsonResponse(unsigned status, const Json& body)
{
    http::Response response;
    response.status = status;
    response.contentType = http::kJsonType;
    response.body = body.dump(2) + '\n';
    return response;
}

}  // namespace

http::Response errorResponse(unsigned status, const std::string& why)
{
    http::Response response = jsonResponse(status, Json{{"error", why}});
    if (status == 401) response.headers.emplace_back("WWW-Authenticate", "Bearer");
    return response;
}

Control::Control(store::Database& database, Settings& settings, faults::Faults& faults, Json seed, std::string token)
    : database_(database), settings_(settings), faults_(faults), seed_(std::move(seed)), token_(std::move(token))
{
    follow();
}

// Clock and faults follow the data file, also where what was changed is undone.
void Control::follow()
{
    settings_.clock.setOffset(store::clockOffset(database_));
    faults_.reload();
}

Json Control::carryOut(const http::Request& request)
{
    const std::string_view path = http::pathOf(request.target).substr(kControlPath.size());
    const Resource& resource = findResource(request.method, path);
    const Call call = callOf(request, resource, path);
    Desk desk{database_, settings_, seed_};
    store::Transaction transaction(database_);
    Json answer = resource.run(desk, call);
    transaction.commit();
    return answer;
}

http::Response Control::answer(const http::Request& request)
{
    http::Response response;
    try {
        response = attempt(request);
        follow();
    } catch (const std::exception& error) {
        std::clog << "a request failed: " << error.what() << std::endl;
        response = errorResponse(500, "the service could not carry out the request");
    }
    response.operation.command = "control";
    return response;
}

http::Response Control::attempt(const http::Request& request)
{
    try {
        return jsonResponse(200, carryOut(request));
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
