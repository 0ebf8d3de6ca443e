// The records of the public header, member by member: how a test fills one with a marker and how it shows one.
#pragma once

#include <string>
#include <type_traits>
#include <vector>

#include "client/WapiClient.h"
#include "tests/support/Text.h"
#include "tests/support/WireFile.h"

template <typename Visit>
void visitMembers(SpaceForList& space, Visit visit)
{
    visit("workspaceID", space.workspaceID);
    visit("workspaceName", space.workspaceName);
    visit("status", space.status);
    visit("userID", space.userID);
    visit("userName", space.userName);
    visit("type", space.type);
    visit("isTemplate", space.isTemplate);
    visit("namespaceID", space.namespaceID);
    visit("description", space.description);
    visit("spaceIconURL", space.spaceIconURL);
    visit("role", space.role);
}

template <typename Visit>
void visitMembers(CZelSpaceInvite& invitation, Visit visit)
{
    visit("spaceInviteID", invitation.spaceInviteID);
    visit("expires", invitation.expires);
    visit("lastModifiedTime", invitation.lastModifiedTime);
    visit("status", invitation.status);
    visit("workspaceID", invitation.workspaceID);
    visit("createTime", invitation.createTime);
    visit("statusChanged", invitation.statusChanged);
    visit("userDescriptor", invitation.userDescriptor);
    visit("userName", invitation.userName);
    visit("workspaceName", invitation.workspaceName);
    visit("ownerID", invitation.ownerID);
    visit("ownerName", invitation.ownerName);
    visit("inviteType", invitation.inviteType);
    visit("inviteAsType", invitation.inviteAsType);
}

/// A tab shows nothing but its accessors, so what is visited is a copy of each of its four values.
template <typename Visit>
void visitMembers(CZelTab& tab, Visit visit)
{
    CStringT id = tab.GetID();
    CStringT name = tab.GetName();
    CStringT type = tab.GetType();
    int position = tab.GetTabPos();
    visit("ID", id);
    visit("name", name);
    visit("type", type);
    visit("position", position);
    tab.SetID(id);
    tab.SetName(name);
    tab.SetType(type);
    tab.SetTabPos(position);
}

/// What an output holds before the call, so that whoever leaves it alone, adds to it or replaces it can be told apart.
inline void mark(CStringT& text)
{
    text = "before"_w;
}

template <typename Member>
inline constexpr bool kIsNumber = std::is_integral_v<Member> || std::is_enum_v<Member>;

/// A record: its texts and its lists; the numbers stay.
template <typename Record>
void mark(Record& record)
{
    visitMembers(record, [](const char*, auto& member) {
        if constexpr (!kIsNumber<std::remove_reference_t<decltype(member)>>) mark(member);
    });
}

template <typename Record>
void mark(std::vector<Record>& records)
{
    records.assign(1, Record());
    mark(records.front());
}

inline void show(WireLines& lines, const std::string& name, CStringT& text)
{
    lines.push_back(text.empty() ? name + " =" : name + " = " + narrow(text));
}

template <typename Record>
void show(WireLines& lines, const std::string& name, Record& record)
{
    lines.push_back(name);
    visitMembers(record, [&](const std::string& memberName, auto& member) {
        if constexpr (kIsNumber<std::remove_reference_t<decltype(member)>>) {
            if (member != 0) lines.push_back(memberName + " = " + std::to_string(static_cast<int>(member)));
        } else {
            if (!member.empty()) show(lines, memberName, member);
        }
    });
}

template <typename Record>
void show(WireLines& lines, const std::string& name, std::vector<Record>& records)
{
    if (records.empty()) lines.push_back(name + ": none");
    for (Record& record : records) show(lines, name, record);
}
