// Workspaces; Tabs; Icons. Written by capi/generate.py.
#include "capi/Call.h"

using namespace capi;

int PVW_CALL pvw_create_space(pvw_client* client, pvw_text cred, pvw_text name, const pvw_workspace_field* fields,
                              size_t fieldCount, pvw_text* workspaceID, int type, int favourite, pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(workspaceID);
        auto theFields = recordsOf<CWapiClient::WKSP_Field_Value>(fields, fieldCount);
        CStringT theWorkspaceID;
        if (live.createSpace(textOf(cred), textOf(name), theFields, theWorkspaceID, type, favourite) == 0) return 0;
        return memory.give(into(workspaceID, memory.of(theWorkspaceID)));
    });
}

int PVW_CALL pvw_clone_wksp(pvw_client* client, pvw_text cred, pvw_text name, pvw_text sourceWorkspaceID,
                            int typeAndFlags, const pvw_workspace_field* fields, size_t fieldCount,
                            pvw_text* workspaceID, int favourite, pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(workspaceID);
        auto theFields = recordsOf<CWapiClient::WKSP_Field_Value>(fields, fieldCount);
        CStringT theWorkspaceID;
        if (live.cloneWksp(textOf(cred), textOf(name), textOf(sourceWorkspaceID), typeAndFlags, theFields,
                           theWorkspaceID, favourite) == 0)
            return 0;
        return memory.give(into(workspaceID, memory.of(theWorkspaceID)));
    });
}

int PVW_CALL pvw_edit_ext_wksp(pvw_client* client, pvw_text cred, pvw_text workspaceID, pvw_text name, int changeName,
                               const pvw_workspace_field* fields, size_t fieldCount)
{
    return asked(client, [&](CWapiClient& live) {
        auto theFields = recordsOf<CWapiClient::WKSP_Field_Value>(fields, fieldCount);
        return live.editExtWksp(textOf(cred), textOf(workspaceID), textOf(name), changeName, theFields);
    });
}

int PVW_CALL pvw_delete_wksp(pvw_client* client, pvw_text cred, pvw_text workspaceID)
{
    return asked(client, [&](CWapiClient& live) { return live.deleteWksp(textOf(cred), textOf(workspaceID)); });
}

int PVW_CALL pvw_leave_workspace(pvw_client* client, pvw_text cred, pvw_text workspaceID)
{
    return asked(client, [&](CWapiClient& live) { return live.leaveWorkspace(textOf(cred), textOf(workspaceID)); });
}

int PVW_CALL pvw_create_space_using_app(pvw_client* client, pvw_text cred, pvw_text name, pvw_text appName,
                                        pvw_text* workspaceID, pvw_text description, int favourite, int type,
                                        pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(workspaceID);
        CStringT theWorkspaceID;
        if (live.createSpaceUsingApp(textOf(cred), textOf(name), textOf(appName), theWorkspaceID, textOf(description),
                                     favourite, type) == 0)
            return 0;
        return memory.give(into(workspaceID, memory.of(theWorkspaceID)));
    });
}

int PVW_CALL pvw_save_workspace_as_app(pvw_client* client, pvw_text cred, pvw_text workspaceID, pvw_text appName,
                                       pvw_text groupID, pvw_text* widgetID, pvw_text description, pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(widgetID);
        CStringT theWidgetID;
        if (live.saveWorkspaceAsApp(textOf(cred), textOf(workspaceID), textOf(appName), textOf(groupID), theWidgetID,
                                    textOf(description)) == 0)
            return 0;
        return memory.give(into(widgetID, memory.of(theWidgetID)));
    });
}

int PVW_CALL pvw_create_tab(pvw_client* client, pvw_text cred, pvw_text workspaceID, pvw_text tabName, int tabOrder,
                            pvw_text* tabID, pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(tabID);
        CStringT theTabID;
        if (live.createTab(textOf(cred), textOf(workspaceID), textOf(tabName), tabOrder, theTabID) == 0) return 0;
        return memory.give(into(tabID, memory.of(theTabID)));
    });
}

int PVW_CALL pvw_get_tabs(pvw_client* client, pvw_text cred, pvw_text workspaceID, pvw_tab_list* tabs,
                          pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(tabs);
        std::vector<CZelTab> theTabs;
        if (live.getTabs(textOf(cred), textOf(workspaceID), theTabs) == 0) return 0;
        return memory.give(into(tabs, memory.of(theTabs)));
    });
}

int PVW_CALL pvw_delete_tab(pvw_client* client, pvw_text cred, pvw_text workspaceID, pvw_text tabID)
{
    return asked(client,
                 [&](CWapiClient& live) { return live.deleteTab(textOf(cred), textOf(workspaceID), textOf(tabID)); });
}

int PVW_CALL pvw_edit_tab(pvw_client* client, pvw_text cred, pvw_text workspaceID, const pvw_tab* tab)
{
    return asked(client, [&](CWapiClient& live) {
        auto theTab = recordOf<CZelTab>(tab);
        return live.editTab(textOf(cred), textOf(workspaceID), theTab);
    });
}

int PVW_CALL pvw_edit_tab_order(pvw_client* client, pvw_text cred, pvw_text workspaceID, const pvw_tab* tabs,
                                size_t tabCount)
{
    return asked(client, [&](CWapiClient& live) {
        auto theTabs = recordsOf<CZelTab>(tabs, tabCount);
        return live.editTabOrder(textOf(cred), textOf(workspaceID), theTabs);
    });
}

int PVW_CALL pvw_set_space_icon(pvw_client* client, pvw_text cred, pvw_text workspaceID, pvw_text filePath,
                                pvw_text* url, pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(url);
        CStringT theUrl;
        if (live.SetSpaceIcon(textOf(cred), textOf(workspaceID), textOf(filePath), theUrl) == 0) return 0;
        return memory.give(into(url, memory.of(theUrl)));
    });
}

int PVW_CALL pvw_get_space_icon(pvw_client* client, pvw_text cred, pvw_text iconURL, pvw_text* localPath,
                                pvw_result** result)
{
    return answered(client, result, [&](CWapiClient& live, Memory& memory) {
        expectPlaces(localPath);
        CStringT theLocalPath;
        if (live.GetSpaceIcon(textOf(cred), textOf(iconURL), theLocalPath) == 0) return 0;
        return memory.give(into(localPath, memory.of(theLocalPath)));
    });
}
