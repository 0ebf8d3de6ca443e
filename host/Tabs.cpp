// The tabs of a workspace.
#include "host/Call.h"
#include "host/Text.h"
#include "host/Topics.h"

namespace host {

namespace {

/// Every workspace has its discussion tab and its files tab, under the same IDs as any other.
bool isFixed(const CStringT& tab)
{
    return tab == FromUtf8("commTab") || tab == FromUtf8("docTab");
}

/// A session for the one workspace where that is needed, which ends with this object; else the command's own.
class WorkspaceSession {
public:
    WorkspaceSession(Call& call, bool needed) : call_(call)
    {
        if (needed) call.check(call.client().cloneSession(call.cred(), call.text("workspace"), clone_));
    }
    WorkspaceSession(const WorkspaceSession&) = delete;
    WorkspaceSession& operator=(const WorkspaceSession&) = delete;
    ~WorkspaceSession()
    {
        if (!clone_.empty()) call_.client().logout(clone_);
    }

    const CStringT& cred() const { return clone_.empty() ? call_.cred() : clone_; }

private:
    Call& call_;
    CStringT clone_;
};

void list(Call& call)
{
    std::vector<CZelTab> tabs;
    call.check(call.client().getTabs(call.cred(), call.text("workspace"), tabs));
    call.show(tabs, {"ID", "name", {"type", kTabTypes}, "position"});
}

void create(Call& call)
{
    CStringT tabID;
    call.check(call.client().createTab(call.cred(), call.xml("workspace"), call.cdata("name"),
                                       call.number("--position", 1), tabID),
               call.emptyOne({"workspace", "name"}));
    call.show({{"tabID", tabID}});
}

void rename(Call& call)
{
    CZelTab tab;
    tab.SetID(call.text("tab"));
    tab.SetName(call.cdata("name"));
    const CStringT workspace = call.text("workspace");
    const WorkspaceSession session(call, isFixed(tab.GetID()) && !workspace.empty());
    call.check(call.client().editTab(session.cred(), workspace, tab), call.emptyOne({"workspace", "tab"}));
}

void order(Call& call)
{
    std::vector<CZelTab> tabs;
    for (const CStringT& id : call.xmlList("tab")) {
        CZelTab& tab = tabs.emplace_back();
        tab.SetID(id);
        tab.SetTabPos(static_cast<int>(tabs.size()));
    }
    call.check(call.client().editTabOrder(call.cred(), call.text("workspace"), tabs),
               tabs.empty() ? "nothing was sent: no tab is named" : "");
}

void remove(Call& call)
{
    const CStringT tab = call.text("tab");
    std::string refusal = call.emptyOne({"workspace", "tab"});
    if (isFixed(tab)) {
        refusal = "nothing was sent: the discussion tab and the files tab stay";
    }
    call.check(call.client().deleteTab(call.cred(), call.text("workspace"), tab), refusal);
}

}  // namespace

Commands tabsCommands()
{
    const Argument workspace{"workspace", "The workspace's ID"};
    const Argument tab{"tab", "The tab's ID"};
    return {
        {"tabs", "The tabs of a workspace", {}, nullptr},
        {"tabs list", "List a workspace's tabs", {workspace}, list, {"getTabs"}, {}, membersOf<CZelTab>},
        {"tabs create",
         "Add a plain tab to a workspace",
         {workspace, {"name", "Its name"}, {"--position", "Its place among the tabs, 1 unless given", Kind::number}},
         create,
         {"createTab"}},
        {"tabs rename", "Give a tab another name", {workspace, tab, {"name", "Its new name"}}, rename, {"editTab"}},
        {"tabs order",
         "Put tabs in an order",
         {workspace, {"tab", "The tabs' IDs, the first one first", Kind::list}},
         order,
         {"editTabOrder"}},
        {"tabs delete",
         "Delete a tab",
         {workspace, tab},
         remove,
         {"deleteTab"},
         "Delete tab {tab} of workspace {workspace}?"},
    };
}

}  // namespace host
