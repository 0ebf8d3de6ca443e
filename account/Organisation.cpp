// What the user's organisation decides for the user.
#include <array>

#include "client/Operation.h"
#include "records/Policy.h"

using namespace wapi;

namespace {

class CXMLWapiGetOrgInfoResponse : public CXMLWapiCommonResponse {
public:
    CXMLWapiGetOrgInfoResponse()
    {
        select(kDirectReply, {{"org/ext/KZN/changePasswordURL/", &changePasswordURL},
                              {"org/ext/KZN/forgetPasswordURL/", &forgetPasswordURL},
                              {"org/ext/KZN/queltSiteInfoURL/", &siteInfoURL},
                              {"org/ext/KZN/connectSupportURL/", &connectSupportURL}});
    }

    CStringT changePasswordURL;
    CStringT forgetPasswordURL;
    CStringT siteInfoURL;
    CStringT connectSupportURL;
};

constexpr unsigned kDomain = 13;

class CXMLWapiGetDomaiResponse : public CXMLWapiCommonResponse {  // sic
public:
    CXMLWapiGetDomaiResponse()
    {
        select(kDirectReply, {{"org/ext/KZN/domainWhiteList/", &whiteList}});
        listen(kDomain, kDirectReply, "org/domains/domain/", {{"domainName/", &domainName_}});
    }

    void OnEndNodeListEvent(unsigned id) override
    {
        CXMLWapiCommonResponse::OnEndNodeListEvent(id);
        if (id != kDomain) return;
        domains += std::exchange(domainName_, {});
        appendAscii(domains, ",");
    }

    CStringT whiteList;
    CStringT domains;  // each with a comma behind it

private:
    CStringT domainName_;
};

struct Feature {
    PathPiece access;
    int CZelPolicy::*flag;
};

// The order of the record; the request has an order of its own.
constexpr std::array<Feature, 21> kFeatures{{
    {"AutomaticUpdates/access/", &CZelPolicy::AutomaticUpdates},
    {"PremiumServices/access/", &CZelPolicy::PremiumServices},
    {"SecureCollaboration/access/", &CZelPolicy::SecureCollaboration},
    {"IMInt/access/", &CZelPolicy::IMInt},
    {"IMExt/access/", &CZelPolicy::IMExt},
    {"DisableIMCatchInt/access/", &CZelPolicy::DisableIMCatchInt},
    {"DisableIMCatchExt/access/", &CZelPolicy::DisableIMCatchExt},
    {"LocalArchive/access/", &CZelPolicy::LocalArchive},
    {"VoIPInt/access/", &CZelPolicy::VoIPInt},
    {"VoIPExt/access/", &CZelPolicy::VoIPExt},
    {"VideoInt/access/", &CZelPolicy::VideoInt},
    {"VideoExt/access/", &CZelPolicy::VideoExt},
    {"DesktopShareInt/access/", &CZelPolicy::DesktopShareInt},
    {"DesktopShareExt/access/", &CZelPolicy::DesktopShareExt},
    {"RemoteControlInt/access/", &CZelPolicy::RemoteControlInt},
    {"RemoteControlExt/access/", &CZelPolicy::RemoteControlExt},
    {"FileTransferInt/access/", &CZelPolicy::FileTransferInt},
    {"FileTransferExt/access/", &CZelPolicy::FileTransferExt},
    {"FileXferVirusScan/access/", &CZelPolicy::FileXferVirusScan},
    {"HasSpaces/access/", &CZelPolicy::HasSpaces},
    {"create-workspace/access/", &CZelPolicy::CreateWorkspace},
}};

constexpr std::string_view kFeatureTests =
    "<tests><AutomaticUpdates/><PremiumServices/><SecureCollaboration/><IMExt/><IMInt/><DisableIMCatchExt/>"
    "<DisableIMCatchInt/><LocalArchive/><VoIPExt/><VoIPInt/><VideoExt/><VideoInt/><DesktopShareExt/><DesktopShareInt/>"
    "<RemoteControlExt/><RemoteControlInt/><FileTransferExt/><FileTransferInt/><FileXferVirusScan/><HasSpaces/>"
    "<create-workspace/></tests>";

class CXMLWapiPolicyResponse : public CXMLWapiCommonResponse {
public:
    CXMLWapiPolicyResponse()
    {
        for (std::size_t i = 0; i < kFeatures.size(); ++i) select(kDirectReply, {{kFeatures[i].access, &access[i]}});
    }

    std::array<CStringT, kFeatures.size()> access;
};

}  // namespace

int CWapiClient::getOrgInfo(const CStringT& cred, CStringT& changePasswordURL, CStringT& forgetPasswordURL,
                            CStringT& siteInfoURL, CStringT& connectSupportURL)
{
    return operation("CWapiClient::getOrgInfo", Timer::leave, [&] {
        FormBody body;
        body.encoded("cmd=", "get").encoded("&type=", "org").encoded("&cred=", cred);
        body.encoded("&id=current&select=", "ext/KZN");

        CXMLWapiGetOrgInfoResponse reply;
        if (!post(body, reply)) return 0;
        changePasswordURL = std::move(reply.changePasswordURL);
        forgetPasswordURL = std::move(reply.forgetPasswordURL);
        siteInfoURL = std::move(reply.siteInfoURL);
        connectSupportURL = std::move(reply.connectSupportURL);
        return 1;
    });
}

int CWapiClient::getDomainList(const CStringT& cred, CStringT& domains)
{
    return operation("CWapiClient::getDomainList", Timer::rearm, [&] {
        FormBody body;
        body.literal("cmd=get").encoded("&cred=", cred).literal("&type=org&id=current&select=org");

        CXMLWapiGetDomaiResponse reply;
        if (!post(body, reply)) return 0;
        domains = reply.whiteList + wide(",") + reply.domains;
        return 1;
    });
}

int CWapiClient::getPolicyData(const CStringT& cred, CZelPolicy& policy)
{
    return operation("CWapiClient::getPolicyData", Timer::rearm, [&] {
        FormBody body;
        body.encoded("cmd=", "execute").encoded("&cred=", cred).encoded("&task=", "ProbeAccess");
        body.encoded("&xml=", kFeatureTests);

        CXMLWapiPolicyResponse reply;
        if (!post(body, reply)) return 0;
        for (std::size_t i = 0; i < kFeatures.size(); ++i)
            if (equalsIgnoringCase(reply.access[i], "true")) policy.*kFeatures[i].flag = 1;
        return 1;
    });
}
