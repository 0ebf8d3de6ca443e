#include "spaces/TabList.h"

#include <utility>

#include "records/Number.h"

namespace wapi {

namespace {

constexpr unsigned kTab = 5;

}  // namespace

TabListPart::TabListPart(CXMLWapiCommonResponse& reply, PathPiece at)
{
    reply.add(*this);
    reply.listen(kTab, at, "workspace/tabs/tab/",
                 {{"tabID/", &tabID_}, {"tabName/", &tabName_}, {"tabType/", &tabType_}, {"tabOrder/", &tabOrder_}});
}

void TabListPart::onEnd(unsigned id)
{
    if (id != kTab) return;
    CZelTab tab;
    tab.SetName(std::exchange(tabName_, {}));
    tab.SetID(std::exchange(tabID_, {}));
    tab.SetType(std::exchange(tabType_, {}));
    tab.SetTabPos(toInt(std::exchange(tabOrder_, {})));
    tabs.push_back(std::move(tab));
}

}  // namespace wapi
