// What the user's organisation decides.
#include "host/Call.h"
#include "host/Topics.h"

namespace host {

namespace {

void show(Call& call)
{
    CStringT changePassword;
    CStringT forgetPassword;
    CStringT siteInfo;
    CStringT connectSupport;
    call.check(call.client().getOrgInfo(call.cred(), changePassword, forgetPassword, siteInfo, connectSupport));
    call.show({{"changePasswordURL", changePassword},
               {"forgetPasswordURL", forgetPassword},
               {"siteInfoURL", siteInfo},
               {"connectSupportURL", connectSupport}});
}

void domains(Call& call)
{
    CStringT text;
    call.check(call.client().getDomainList(call.cred(), text));
    call.showText("domains", text);
}

void policy(Call& call)
{
    CZelPolicy flags;
    call.check(call.client().getPolicyData(call.cred(), flags));
    call.show(flags);
}

}  // namespace

Commands organisationCommands()
{
    return {
        {"org", "Your organisation", {}, nullptr},
        {"org show", "Show its addresses", {}, show, {"getOrgInfo"}},
        {"org domains", "Show its white list and its domains", {}, domains, {"getDomainList"}},
        {"org policy", "Show which features it allows; 1 is allowed", {}, policy, {"getPolicyData"}},
    };
}

}  // namespace host
