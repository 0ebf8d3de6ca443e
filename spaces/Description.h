// Which attribute of a workspace is its description.
#pragma once

namespace wapi {

/// The one field of CWapiClient::WKSP_Field_Value that goes out; each entry becomes a text of its own.
constexpr int kDescriptionField = 0;

}  // namespace wapi
