// The tabs of a workspace. Only the listing re-arms the timer.
#include "client/Operation.h"
#include "spaces/TabList.h"

using namespace wapi;

namespace {

class CXMLWapiCreateTabResponse : public CXMLWapiCommonResponse {
public:
    CXMLWapiCreateTabResponse() { select(kDirectReply, {{"tab/tabID/", &tabID}}); }

    CStringT tabID;
};

class CXMLWapiGetTabsResponse : public CXMLWapiCommonResponse {
public:
    TabListPart list{*this, kDirectReply};
};

// The two tabs that every discussion workspace keeps.
bool isFixed(const CStringT& tabID) noexcept
{
    return equals(tabID, "commTab") || equals(tabID, "docTab");
}

}  // namespace

int CWapiClient::createTab(const CStringT& cred, const CStringT& workspaceID, const CStringT& tabName, int tabOrder,
                           CStringT& tabID)
{
    return operation("CWapiClient::createTab", Timer::leave, [&] {
        if (workspaceID.empty() || tabName.empty()) return 0;

        FormBody body;
        body.encoded("cmd=", "execute").encoded("&cred=", cred).encoded("&task=", "AddTabs");
        body.encoded("&xml=", "<workspace><workspaceID>", workspaceID, "</workspaceID><tabs><tab><tabName>",
                     Cdata{tabName}, "</tabName><tabType>0</tabType><tabOrder>", tabOrder,
                     "</tabOrder></tab></tabs></workspace>");

        CXMLWapiCreateTabResponse reply;
        if (!post(body, reply)) return 0;
        tabID = std::move(reply.tabID);
        return 1;
    });
}

int CWapiClient::getTabs(const CStringT& cred, const CStringT& workspaceID, std::vector<CZelTab>& tabs)
{
    return operation("CWapiClient::getTabs", Timer::rearm, [&] {
        FormBody body;
        body.encoded("cmd=", "get").encoded("&cred=", cred).encoded("&type=", "workspace").encoded("&id=", workspaceID);
        body.literal("&select=tabs");

        CXMLWapiGetTabsResponse reply;
        if (!post(body, reply)) return 0;
        tabs = std::move(reply.list.tabs);
        return 1;
    });
}

int CWapiClient::deleteTab(const CStringT& cred, const CStringT& workspaceID, const CStringT& tabID)
{
    return operation("CWapiClient::deleteTab", Timer::leave, [&] {
        if (workspaceID.empty() || tabID.empty()) return 0;
        if (isFixed(tabID)) {
            trace(TraceLevel::debug, "temporarily.... can't delete commTab and docTab");
            return 0;
        }

        // The workspace's ID has to be there and is not sent.
        FormBody body;
        body.encoded("cmd=", "delete").encoded("&cred=", cred).encoded("&type=", "tab").encoded("&id=", tabID);

        CXMLWapiCommonResponse reply;
        return post(body, reply);
    });
}

int CWapiClient::editTab(const CStringT& cred, const CStringT& workspaceID, CZelTab& tab)
{
    return operation("CWapiClient::editTab", Timer::leave, [&] {
        const CStringT tabID = tab.GetID();
        if (tabID.empty() || workspaceID.empty()) return 0;

        FormBody body;
        body.encoded("cmd=", "set").encoded("&cred=", cred).encoded("&type=", "tab").encoded("&id=", tabID);
        body.encoded("&xml=", "<tab><tabName>", Cdata{tab.GetName()}, "</tabName></tab>");

        CXMLWapiSetResponse reply;
        return post(body, reply);
    });
}

int CWapiClient::editTabOrder(const CStringT& cred, const CStringT& workspaceID, std::vector<CZelTab>& tabs)
{
    return operation("CWapiClient::editTabOrder", Timer::leave, [&] {
        if (tabs.empty()) return 0;

        FormBody body;
        body.encoded("cmd=", "set").encoded("&cred=", cred).encoded("&type=", "wksp").encoded("&id=", workspaceID);
        body.encoded("&xml=", "<workspace><tabs>");
        for (const CZelTab& tab : tabs)
            body.more("<tab><tabID>", tab.GetID(), "</tabID><tabOrder>", tab.GetTabPos(), "</tabOrder></tab>");
        body.more("</tabs></workspace>");

        CXMLWapiCommonResponse reply;
        return post(body, reply);
    });
}
