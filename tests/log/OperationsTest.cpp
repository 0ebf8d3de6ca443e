// Each operation's bodies, as the wire examples have them, are recognised.
#include "log/Operations.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <set>

#include "tests/support/WireFile.h"

namespace {

using namespace logreader;

const std::filesystem::path kWire = PVWAPI_WIRE_FOLDER;

/// What cannot be told, by the operation that sent it: what it is called then, and why.
const std::map<std::string, std::set<std::string>>& ambiguous()
{
    static const std::map<std::string, std::set<std::string>> kAmbiguous = {
        // Renewing an expired credential sends a login, letter for letter.
        {"getCredForExpired", {"login"}},
        // The caller's own command: whatever it says.
        {"callWapi", {"callWapi", "get", "get user", "login", "nothing"}},
        // Its request is not in the log; these are the bodies that go out.
        {"WapiProxyCall", {"callWapi", "get", "get user", "Login"}},
        // Without any workspace and without any test, both ask for nothing.
        {"getRole", {"execute ProbeAccess"}},
        {"probeSpaceAccess", {"execute ProbeAccess"}},
    };
    return kAmbiguous;
}

bool mayBeCalled(const std::string& operation, const std::string& name)
{
    const auto found = ambiguous().find(operation);
    return found != ambiguous().end() && found->second.contains(name);
}

TEST(Operations, EveryWireExampleIsRecognised)
{
    std::set<std::string> recognised;
    std::set<std::string> seenAmbiguous;
    for (const std::string& name : wireCaseNames(kWire)) {
        const WireCase wire = readWireCase(kWire, name);
        if (!wire.request || wire.request->body.empty()) continue;
        const std::string& body = wire.request->body;
        EXPECT_TRUE(looksLikeForm(body)) << name;
        const std::string found = operationOf(fieldsOf(body));
        if (found == wire.operation) recognised.insert(found);
        else if (mayBeCalled(wire.operation, found)) seenAmbiguous.insert(wire.operation);
        else ADD_FAILURE() << name << ": " << wire.operation << " is taken for " << found;
    }
    // Every operation but the icons, which leave nothing in the log, and the three that are told by nothing.
    EXPECT_GE(recognised.size(), 48U);
    EXPECT_EQ(seenAmbiguous.size(), ambiguous().size());
}

TEST(Operations, RepliesOfTheWireExamplesAreNoRequests)
{
    for (const std::string& name : wireCaseNames(kWire)) {
        const WireCase wire = readWireCase(kWire, name);
        EXPECT_FALSE(wire.reply && looksLikeForm(wire.reply->body)) << name;
    }
}

TEST(Operations, UnknownBodiesHaveTheirCommandAndSubject)
{
    const auto name = [](std::string_view form) { return operationOf(fieldsOf(form)); };
    EXPECT_EQ(name("cmd=execute&task=NoSuchTask&cred=c"), "execute NoSuchTask");
    EXPECT_EQ(name("cmd=get&type=workspace&select=other"), "get workspace");
    EXPECT_EQ(name("cmd=execute&task=RunScript&xml=<script></script>"), "execute RunScript");
    EXPECT_EQ(name("cmd=frobnicate"), "frobnicate");
    EXPECT_EQ(name("&cred="), "callWapi");
}

// What a user writes into a request does not change what it is.
TEST(Operations, TextsOfTheUserDoNotDecide)
{
    EXPECT_EQ(operationOf(fieldsOf("cmd=execute&cred=c&task=AddTabs&xml=<workspace><workspaceID>w</workspaceID><tabs>"
                                   "<tab><tabName><![CDATA[<workspace><workspaceName>]]>")),
              "createTab");
}

TEST(Operations, NameIsAPartOrAPattern)
{
    for (const char* const pattern : {"createTab", "TAB", "eat", "create*", "*tab", "c?eateTa?", "*", "*e*t*", "**"}) {
        EXPECT_TRUE(matchesOperation("createTab", pattern)) << pattern;
    }
    for (const char* const pattern : {"createTabs", "x", "create?", "tab*", "?", "*x*", "c*x"}) {
        EXPECT_FALSE(matchesOperation("createTab", pattern)) << pattern;
    }
}

}  // namespace
