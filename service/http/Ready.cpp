#include "service/http/Ready.h"

#include <nlohmann/json.hpp>

#include "service/Context.h"
#include "service/base/Process.h"

namespace service::http {

std::string readyText(const Settings& settings, const std::string& token)
{
    nlohmann::ordered_json line;
    line["ready"] = true;
    line["url"] = settings.baseURL + "/kznconnect/op.do";
    line["version"] = PVWAPI_VERSION;
    line["pid"] = processID();
    if (!token.empty()) {
        line["control"] = settings.baseURL + "/control/";
        line["token"] = token;
    }
    return line.dump();
}

}  // namespace service::http
