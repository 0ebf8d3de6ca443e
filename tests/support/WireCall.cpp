#include "tests/support/WireCall.h"

#include <algorithm>

const std::string& WireCall::argument(const std::string& name)
{
    const auto found = std::ranges::find(arguments_, name, &WireField::name);
    if (found == arguments_.end()) throw WireFileError("no argument " + name);
    used_.insert(name);
    return found->value;
}

CStringT WireCall::text(const std::string& name)
{
    return wide(argument(name));
}

int WireCall::number(const std::string& name)
{
    return std::stoi(argument(name));
}

std::vector<CStringT> WireCall::texts(const std::string& name)
{
    used_.insert(name);
    std::vector<CStringT> values;
    for (const WireField& item : arguments_) {
        if (item.name == name) values.push_back(wide(item.value));
    }
    return values;
}

std::vector<CWapiClient::WKSP_Field_Value> WireCall::fieldValues(const std::string& name)
{
    used_.insert(name);
    std::vector<CWapiClient::WKSP_Field_Value> values;
    for (const WireField& item : arguments_) {
        if (item.name != name) continue;
        const auto colon = item.value.find(": ");
        if (colon == std::string::npos) throw WireFileError("no number in " + item.value);
        values.push_back({std::stoi(item.value.substr(0, colon)), wide(item.value.substr(colon + 2))});
    }
    return values;
}

WireLines WireCall::outputs() const
{
    WireLines lines;
    for (const auto& showOne : showAll_) showOne(lines);
    return lines;
}

WireLines WireCall::unusedArguments() const
{
    WireLines names;
    for (const WireField& item : arguments_) {
        if (!used_.contains(item.name)) names.push_back(item.name);
    }
    return names;
}
