#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "service/xml/Node.h"

// How handlers read the fields of their XML: one reason for each way in which a field can be wrong.
namespace service::commands {

// Refuses another element than the expected one.
void expectElement(const xml::Node& xml, std::string_view name);

// Refuses an element at a path that none of these leads to or through.
void expectPaths(const xml::Node& xml, std::initializer_list<std::string_view> paths);

// The trimmed text of an identifier; refused where it is missing or empty.
std::string requiredID(const xml::Node& xml, std::string_view path);

// A name that people read: kept as it stands, refused where it is empty or too long.
std::string requiredName(const xml::Node& xml, std::string_view path);
void checkName(const std::string& name, std::string_view what);

// A whole number; `absent` where there is no such element.
long long numberField(const xml::Node& xml, std::string_view path, long long least, long long most, long long absent);

// "true" or "false"; false where there is no such element.
bool truthField(const xml::Node& xml, std::string_view path);

// All the texts of ext/KZN/description, in their order.
std::vector<std::string> descriptionTexts(const xml::Node& workspace);

}  // namespace service::commands
