// The records of the class and those of the C interface, into each other. Written by capi/generate.py.
#pragma once

#include <cstddef>

#include "capi/pvwapi_c.h"
#include "client/WapiClient.h"

namespace capi {

class Memory;

/// What stands for a record of the class in C.
template <typename Record>
struct CTypes;

template <>
struct CTypes<WAPIMESSAGE> {
    using Record = pvw_message;
};
template <>
struct CTypes<CWapiClient::WKSP_Field_Value> {
    using Record = pvw_workspace_field;
    static constexpr std::size_t kLeast = sizeof(pvw_workspace_field);
};
template <>
struct CTypes<CWapiClient::USER_Field_Value> {
    using Record = pvw_user_field;
    static constexpr std::size_t kLeast = sizeof(pvw_user_field);
};
template <>
struct CTypes<CZelTab> {
    using Record = pvw_tab;
    static constexpr std::size_t kLeast = sizeof(pvw_tab);
    using List = pvw_tab_list;
};
template <>
struct CTypes<CZelMember> {
    using Record = pvw_member;
    using List = pvw_member_list;
};
template <>
struct CTypes<SpaceForList> {
    using Record = pvw_listed_space;
    using List = pvw_listed_space_list;
};
template <>
struct CTypes<CZelSpaceInvite> {
    using Record = pvw_space_invite;
    using List = pvw_space_invite_list;
};
template <>
struct CTypes<space_t> {
    using Record = pvw_space;
    using List = pvw_space_list;
};
template <>
struct CTypes<SPACE_ACCESS> {
    using Record = pvw_space_access;
};
template <>
struct CTypes<DOC_ACCESS> {
    using Record = pvw_doc_access;
};
template <>
struct CTypes<ROOM_ACCESS> {
    using Record = pvw_room_access;
};
template <>
struct CTypes<RoleItem> {
    using Record = pvw_role_item;
    using List = pvw_role_item_list;
};
template <>
struct CTypes<SPACEINVT> {
    using Record = pvw_invitation;
    static constexpr std::size_t kLeast = sizeof(pvw_invitation);
    using List = pvw_invitation_list;
};
template <>
struct CTypes<CZelISProvider> {
    using Record = pvw_is_provider;
    using List = pvw_is_provider_list;
};
template <>
struct CTypes<CUserConfigInfo> {
    using Record = pvw_user_config_info;
};
template <>
struct CTypes<USER_PROFILE> {
    using Record = pvw_user_profile;
    static constexpr std::size_t kLeast = sizeof(pvw_user_profile);
    using List = pvw_user_profile_list;
};
template <>
struct CTypes<CZelPolicy> {
    using Record = pvw_policy;
};
template <>
struct CTypes<CZelTemplateItem> {
    using Record = pvw_template_item;
    using List = pvw_template_item_list;
};
template <>
struct CTypes<library_t> {
    using Record = pvw_library;
    using List = pvw_library_list;
};
template <>
struct CTypes<library_app_t> {
    using Record = pvw_library_app;
    using List = pvw_library_app_list;
};
template <>
struct CTypes<library2_t> {
    using Record = pvw_app_library;
    using List = pvw_app_library_list;
};
template <>
struct CTypes<SPACE_COUNT_ITEM> {
    using Record = pvw_space_count_item;
    static constexpr std::size_t kLeast = sizeof(pvw_space_count_item);
    using List = pvw_space_count_item_list;
};

template <typename Record>
using CRecord = typename CTypes<Record>::Record;

template <typename Record>
using CList = typename CTypes<Record>::List;

template <typename Record>
concept IsRecord = requires
{
    typename CTypes<Record>::Record;
};

pvw_message toC(Memory& memory, const WAPIMESSAGE& from);
pvw_tab toC(Memory& memory, const CZelTab& from);
pvw_member toC(Memory& memory, const CZelMember& from);
pvw_listed_space toC(Memory& memory, const SpaceForList& from);
pvw_space_invite toC(Memory& memory, const CZelSpaceInvite& from);
pvw_space toC(Memory& memory, const space_t& from);
pvw_space_access toC(Memory& memory, const SPACE_ACCESS& from);
pvw_doc_access toC(Memory& memory, const DOC_ACCESS& from);
pvw_room_access toC(Memory& memory, const ROOM_ACCESS& from);
pvw_role_item toC(Memory& memory, const RoleItem& from);
pvw_invitation toC(Memory& memory, const SPACEINVT& from);
pvw_is_provider toC(Memory& memory, const CZelISProvider& from);
pvw_user_config_info toC(Memory& memory, const CUserConfigInfo& from);
pvw_user_profile toC(Memory& memory, const USER_PROFILE& from);
pvw_policy toC(Memory& memory, const CZelPolicy& from);
pvw_template_item toC(Memory& memory, const CZelTemplateItem& from);
pvw_library toC(Memory& memory, const library_t& from);
pvw_library_app toC(Memory& memory, const library_app_t& from);
pvw_app_library toC(Memory& memory, const library2_t& from);
pvw_space_count_item toC(Memory& memory, const SPACE_COUNT_ITEM& from);

void fromC(const pvw_workspace_field& from, CWapiClient::WKSP_Field_Value& to);
void fromC(const pvw_user_field& from, CWapiClient::USER_Field_Value& to);
void fromC(const pvw_tab& from, CZelTab& to);
void fromC(const pvw_invitation& from, SPACEINVT& to);
void fromC(const pvw_user_profile& from, USER_PROFILE& to);
void fromC(const pvw_space_count_item& from, SPACE_COUNT_ITEM& to);

}  // namespace capi
