#pragma once

#include <string>
#include <string_view>

namespace service::rules {

// What a tab shows.
inline constexpr long long kPlainTab = 0;
inline constexpr long long kDiscussionTab = 1;
inline constexpr long long kFilesTab = 2;

// The discussion tab and the files tab go by the same names in every workspace, and cannot be deleted.
inline constexpr std::string_view kDiscussionTabID = "commTab";
inline constexpr std::string_view kFilesTabID = "docTab";

inline bool isFixedTab(std::string_view tabID)
{
    return tabID == kDiscussionTabID || tabID == kFilesTabID;
}

}  // namespace service::rules
