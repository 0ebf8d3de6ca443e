#include "tests/client/WireOperations.h"

namespace {

CZelTab oneTab(WireCall& call)
{
    CZelTab tab;
    tab.SetID(call.text("tab ID"));
    tab.SetName(call.text("tab name"));
    tab.SetType(call.text("tab type"));
    tab.SetTabPos(call.number("tab position"));
    return tab;
}

/// A list of "place: ID"; what else a tab holds is there to be noticed if it is sent.
std::vector<CZelTab> placedTabs(WireCall& call)
{
    std::vector<CZelTab> tabs;
    for (const auto& [place, id] : call.fieldValues("tabs")) {
        CZelTab& tab = tabs.emplace_back();
        tab.SetID(id);
        tab.SetName("not sent"_w);
        tab.SetType("not sent"_w);
        tab.SetTabPos(place);
    }
    return tabs;
}

}  // namespace

WireOperations spaceOperations()
{
    return {
        {"createSpace",
         [](CWapiClient& client, WireCall& call) {
             auto fields = call.fieldValues("fields");
             return client.createSpace(call.text("cred"), call.text("name"), fields,
                                       call.output<CStringT>("workspaceID"), call.number("type"),
                                       call.number("favourite"));
         }},
        {"cloneWksp",
         [](CWapiClient& client, WireCall& call) {
             auto fields = call.fieldValues("fields");
             return client.cloneWksp(call.text("cred"), call.text("name"), call.text("sourceWorkspaceID"),
                                     call.number("typeAndFlags"), fields, call.output<CStringT>("workspaceID"),
                                     call.number("favourite"));
         }},
        {"editExtWksp",
         [](CWapiClient& client, WireCall& call) {
             auto fields = call.fieldValues("fields");
             return client.editExtWksp(call.text("cred"), call.text("workspaceID"), call.text("name"),
                                       call.number("changeName"), fields);
         }},
        {"deleteWksp", [](CWapiClient& client,
                          WireCall& call) { return client.deleteWksp(call.text("cred"), call.text("workspaceID")); }},
        {"leaveWorkspace",
         [](CWapiClient& client, WireCall& call) {
             return client.leaveWorkspace(call.text("cred"), call.text("workspaceID"));
         }},
    };
}

WireOperations spaceAppOperations()
{
    return {
        {"createSpaceUsingApp",
         [](CWapiClient& client, WireCall& call) {
             return client.createSpaceUsingApp(call.text("cred"), call.text("name"), call.text("appName"),
                                               call.output<CStringT>("workspaceID"), call.text("description"),
                                               call.number("favourite"), call.number("type"));
         }},
        {"saveWorkspaceAsApp",
         [](CWapiClient& client, WireCall& call) {
             return client.saveWorkspaceAsApp(call.text("cred"), call.text("workspaceID"), call.text("appName"),
                                              call.text("groupID"), call.output<CStringT>("widgetID"),
                                              call.text("description"));
         }},
    };
}

WireOperations tabOperations()
{
    return {
        {"createTab",
         [](CWapiClient& client, WireCall& call) {
             return client.createTab(call.text("cred"), call.text("workspaceID"), call.text("tabName"),
                                     call.number("tabOrder"), call.output<CStringT>("tabID"));
         }},
        {"getTabs",
         [](CWapiClient& client, WireCall& call) {
             return client.getTabs(call.text("cred"), call.text("workspaceID"),
                                   call.output<std::vector<CZelTab>>("tabs"));
         }},
        {"deleteTab",
         [](CWapiClient& client, WireCall& call) {
             return client.deleteTab(call.text("cred"), call.text("workspaceID"), call.text("tabID"));
         }},
        {"editTab",
         [](CWapiClient& client, WireCall& call) {
             CZelTab tab = oneTab(call);
             return client.editTab(call.text("cred"), call.text("workspaceID"), tab);
         }},
        {"editTabOrder",
         [](CWapiClient& client, WireCall& call) {
             std::vector<CZelTab> tabs = placedTabs(call);
             return client.editTabOrder(call.text("cred"), call.text("workspaceID"), tabs);
         }},
    };
}
