// One workspace in full.
#pragma once

#include <vector>

#include "pvutil/StringEx.h"
#include "records/Members.h"
#include "records/Tabs.h"

struct space_t {
    CStringT workspaceID;
    CStringT workspaceName;
    CStringT type;
    CStringT isTemplate;
    CStringT userID;  ///< the owner's
    CStringT userName;
    CStringT namespaceID;
    CStringT namespaceName;
    CStringT createTime;
    CStringT lastModifiedTime;
    CStringT groupName;
    CStringT groupID;
    CStringT descriptionText;
    CStringT descriptionIcon;
    CStringT discussionTab;
    CStringT filesTab;
    CStringT spaceIconURL;
    std::vector<CZelMember> members;
    std::vector<CZelTab> tabs;
    int kind = 0;  ///< the type in the low bits, 16 for a template; 0 while unknown
};
