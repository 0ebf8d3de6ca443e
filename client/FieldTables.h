// The members of the records that stand within the class.
#pragma once

#include <tuple>

#include "client/WapiClient.h"
#include "records/MemberTable.h"

namespace pvrecords {

template <>
inline constexpr std::tuple kMembers<CWapiClient::WKSP_Field_Value>{
    Member{"field", &CWapiClient::WKSP_Field_Value::field},
    Member{"value", &CWapiClient::WKSP_Field_Value::value},
};

template <>
inline constexpr std::tuple kMembers<CWapiClient::USER_Field_Value>{
    Member{"type", &CWapiClient::USER_Field_Value::type},
    Member{"value", &CWapiClient::USER_Field_Value::value},
};

template <>
inline constexpr std::tuple kMembers<CWapiClient::Exchange>{
    Member{"method", &CWapiClient::Exchange::method},
    Member{"url", &CWapiClient::Exchange::url},
    Member{"headers", &CWapiClient::Exchange::headers},
    Member{"body", &CWapiClient::Exchange::body},
    Member{"status", &CWapiClient::Exchange::status},
    Member{"reply", &CWapiClient::Exchange::reply},
    Member{"milliseconds", &CWapiClient::Exchange::milliseconds},
};

}  // namespace pvrecords
