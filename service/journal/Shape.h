#pragma once

#include <string>
#include <string_view>

#include "service/base/Json.h"
#include "service/store/Exchanges.h"

// How exchanges look as JSON.
namespace service::journal {

// A line of a list.
Json summaryOf(const store::Exchange& exchange);

// Everything that is kept, XML with a line an element.
Json detailOf(const store::Exchange& exchange);

// A text with a line an element where it is XML, and as it is where it is not.
std::string indented(std::string_view text);

// What goes out to those who watch.
std::string eventText(const store::Exchange& exchange);

// JSON of any bytes: what is no text is replaced.
std::string textOf(const Json& json);

// The JSON of a string.
std::string quoted(std::string_view text);

}  // namespace service::journal
