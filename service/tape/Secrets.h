#pragma once

#include <string_view>
#include <vector>

#include "service/tape/Members.h"

namespace service::tape {

// Where passwords, tokens and credentials stand in what a host and a service say. All of it goes by names: what is read
// may be any service's, and need not be well-formed. It takes time in proportion to the text.

// Of a text: elements, attributes, members of JSON, addresses and the like, also where the markup is escaped.
std::vector<Found> secretsIn(std::string_view text);

// Of an address, or of a request's target.
std::vector<Found> secretsOfAddress(std::string_view address);

// Of a request's body. The files of a form are read where they are text.
std::vector<Found> secretsOfBody(std::string_view contentType, std::string_view body);

// Of a header line. What vouches for somebody is one as a whole.
std::vector<Found> secretsOfHeader(std::string_view name, std::string_view value);

// Neither text nor anything that text stands in.
bool isPicture(std::string_view contentType, std::string_view body);

}  // namespace service::tape
