#include "service/objects/ObjectTypes.h"
#include "service/store/Organisations.h"

namespace service::objects {

namespace {

xml::Node organisationNode(const Context& context, const store::Organisation& item)
{
    xml::Node org("org");
    org.add("orgID", item.orgID);
    org.add("orgName", item.name);
    xml::Node& extension = org.add("ext").add("KZN");
    extension.add("changePasswordURL", item.changePasswordURL);
    extension.add("forgetPasswordURL", item.forgetPasswordURL);
    extension.add("queltSiteInfoURL", item.siteInfoURL);
    extension.add("connectSupportURL", item.connectSupportURL);
    extension.add("domainWhiteList", item.domainWhiteList);
    xml::Node& domains = org.add("domains");
    for (const std::string& name : store::domainsOf(context.database, item.orgID)) {
        domains.add("domain").add("domainName", name);
    }
    return org;
}

// A caller sees no organisation but their own.
std::vector<xml::Node> listOrganisations(const Context& context, const script::Selection& /*wanted*/)
{
    std::vector<xml::Node> nodes;
    if (const auto item = store::findOrganisation(context.database, context.session.orgID)) {
        nodes.push_back(organisationNode(context, *item));
    }
    return nodes;
}

std::optional<xml::Node> findOrganisation(const Context& context, const std::string& id,
                                          const script::Selection& wanted)
{
    if (currentOr(id, context.session.orgID) != context.session.orgID) return std::nullopt;
    std::vector<xml::Node> nodes = listOrganisations(context, wanted);
    if (nodes.empty()) return std::nullopt;
    return std::move(nodes.front());
}

}  // namespace

ObjectType organisationType()
{
    return {"org", {"org"}, listOrganisations, findOrganisation};
}

}  // namespace service::objects
