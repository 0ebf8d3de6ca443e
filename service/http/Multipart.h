#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "service/Context.h"
#include "service/http/Form.h"

namespace service::http {

// The fields of an upload and its one file. The file's content is a view into the body.
struct MultipartForm {
    Form form;
    std::vector<std::string> names;  // of its fields, in the order in which they came
    Upload file;
    bool hasFile = false;
};

// Refuses a body that is not what its content type says: no boundary, no end, a part without a name.
MultipartForm readMultipart(std::string_view contentType, std::string_view body);

}  // namespace service::http
