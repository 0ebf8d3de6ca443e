// The library's texts and records as JSON: members keep their names and their order.
#pragma once

#include <nlohmann/json.hpp>

#include "client/WapiClient.h"

namespace host {

using Json = nlohmann::ordered_json;

}  // namespace host

// The library's text is a basic_string like many others, which JSON would take for a list of numbers.
template <>
struct nlohmann::adl_serializer<CStringT> {
    static void to_json(host::Json& json, const CStringT& text) { json = kzn::pvutil::stringex::ToUtf8(text); }
};

void to_json(host::Json& json, const SpaceForList& space);
void to_json(host::Json& json, const CZelSpaceInvite& invitation);
void to_json(host::Json& json, const space_t& space);
void to_json(host::Json& json, const CZelTab& tab);
void to_json(host::Json& json, const SPACE_ACCESS& access);
void to_json(host::Json& json, const DOC_ACCESS& access);
void to_json(host::Json& json, const ROOM_ACCESS& access);
void to_json(host::Json& json, const RoleItem& item);
void to_json(host::Json& json, const CZelMember& member);
void to_json(host::Json& json, const SPACEINVT& invitation);
void to_json(host::Json& json, const CUserConfigInfo& info);
void to_json(host::Json& json, const CZelISProvider& provider);
void to_json(host::Json& json, const USER_PROFILE& profile);
void to_json(host::Json& json, const CZelPolicy& policy);
void to_json(host::Json& json, const library_t& library);
void to_json(host::Json& json, const CZelTemplateItem& item);
void to_json(host::Json& json, const library2_t& library);
void to_json(host::Json& json, const library_app_t& app);
void to_json(host::Json& json, const SPACE_COUNT_ITEM& item);
