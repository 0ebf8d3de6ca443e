// One call of a wire example, as the operation's line in the table sees it: arguments in, outputs out.
#pragma once

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "client/WapiClient.h"
#include "tests/support/RecordText.h"
#include "tests/support/WireFile.h"

class WireCall {
public:
    explicit WireCall(WireFields arguments) : arguments_(std::move(arguments)) {}

    /// The argument of this name; WireFileError where the file has none.
    CStringT text(const std::string& name);
    int number(const std::string& name);

    /// A list of texts; empty where the file has none.
    std::vector<CStringT> texts(const std::string& name);

    /// A list of "number: text"; empty where the file has none.
    std::vector<CWapiClient::WKSP_Field_Value> fieldValues(const std::string& name);

    /// An output parameter, holding its marker.
    template <typename Value>
    Value& output(const std::string& name)
    {
        Value before;
        mark(before);
        return output(name, std::move(before));
    }

    /// One that the arguments say something about, too.
    template <typename Value>
    Value& output(const std::string& name, Value before)
    {
        const auto value = std::make_shared<Value>(std::move(before));
        show(linesBefore_, name, *value);
        showAll_.push_back([name, value](WireLines& lines) { show(lines, name, *value); });
        return *value;
    }

    WireLines outputsBefore() const { return linesBefore_; }
    WireLines outputs() const;

    /// Arguments of the file that no operation asked for.
    WireLines unusedArguments() const;

private:
    const std::string& argument(const std::string& name);

    WireFields arguments_;
    std::set<std::string> used_;
    WireLines linesBefore_;
    std::vector<std::function<void(WireLines&)>> showAll_;
};

/// One public operation: how its named arguments become a call.
struct WireOperation {
    std::string name;
    std::function<int(CWapiClient&, WireCall&)> call;
};

using WireOperations = std::vector<WireOperation>;
