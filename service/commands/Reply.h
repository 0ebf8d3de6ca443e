#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "service/xml/Node.h"

namespace service::commands {

// What a request that went well answers. The payload stands under "return".
struct Reply {
    xml::Node payload{"return"};
    std::string cred;                   // sent where the command hands out a credential
    std::vector<std::string> messages;  // for people
};

std::string successText(const Reply& reply);
std::string failureText(std::string_view reason, std::string_view exceptionID);

}  // namespace service::commands
