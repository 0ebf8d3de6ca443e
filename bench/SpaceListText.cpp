#include "bench/SpaceListText.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <initializer_list>
#include <string_view>

namespace kzn::bench {

namespace {

constexpr std::array<std::string_view, 32> kWords = {
    "annual",    "budget",  "campus",   "design", "estimate", "field",   "garden",  "harbour",
    "index",     "journal", "kitchen",  "launch", "meeting",  "notes",   "outline", "planning",
    "quarterly", "review",  "schedule", "travel", "update",   "vendor",  "winter",  "yearly",
    "audit",     "board",   "contract", "draft",  "event",    "finance", "goal",    "house"};

constexpr std::array<std::string_view, 4> kForeignWords = {"r\xC3\xA9union",
                                                           "\xC3\xBC"
                                                           "bersicht",
                                                           "\xE8\xA8\x88\xE7\x94\xBB",
                                                           "\xC5\x82\xC4\x85"
                                                           "ka"};
constexpr std::string_view kBeyondBasicPlane = "\xF0\x9F\x93\x8C";

// Spreads neighbouring numbers over all 64 bits.
std::uint64_t scattered(std::uint64_t number)
{
    number += 0x9E3779B97F4A7C15U;
    number = (number ^ (number >> 30)) * 0xBF58476D1CE4E5B9U;
    number = (number ^ (number >> 27)) * 0x94D049BB133111EBU;
    return number ^ (number >> 31);
}

std::string identity(std::string_view kind, std::uint64_t number)
{
    std::array<char, 24> digits{};
    std::snprintf(digits.data(), digits.size(), "%016llx", static_cast<unsigned long long>(scattered(number)));
    return std::string(kind) + digits.data();
}

std::string words(std::uint64_t seed, std::uint64_t count)
{
    std::string text;
    for (std::uint64_t i = 0; i < count; ++i) {
        if (i != 0) text += ' ';
        text += kWords[scattered(seed * 31 + i) % kWords.size()];
    }
    return text;
}

void element(std::string& out, std::string_view name, std::string_view text)
{
    out.append("<").append(name).append(">").append(text).append("</").append(name).append(">");
}

std::string nameOf(std::uint64_t number)
{
    std::string name = words(number, 3) + " " + std::to_string(number);
    if (number % 10 == 0) name.append(" ").append(kForeignWords[number / 10 % kForeignWords.size()]);
    if (number % 20 == 0) name += " &amp; more";
    return name;
}

std::string descriptionOf(std::uint64_t number)
{
    std::string text = words(number + 7, 8 + number % 8);
    if (number % 10 == 0) text.append(" ").append(kForeignWords[number / 10 % kForeignWords.size()]);
    if (number % 100 == 0) text.append(" ").append(kBeyondBasicPlane);
    return text;
}

std::string userNameOf(std::uint64_t number)
{
    return words(number + 3, 1) + "." + words(number + 5, 1) + std::to_string(number % 1000) + "@example.org";
}

void appendSpace(std::string& out, std::uint64_t number)
{
    const std::string id = identity("ws-", number);
    out += "<workspace>";
    element(out, "workspaceID", id);
    element(out, "workspaceName", nameOf(number));
    element(out, "userID", identity("us-", number / 8));
    element(out, "userName", userNameOf(number / 8));
    element(out, "type", number % 4 == 0 ? "2" : "0");
    element(out, "isTemplate", number % 32 == 0 ? "true" : "false");
    element(out, "namespaceID", identity("ns-", 1));
    out += "<ext><KZN><description>";
    element(out, "text", descriptionOf(number));
    out += "</description><spaceIcon>";
    element(out, "url", "http://icons.example.org/kzndms/icon/" + id + ".png?version=3&amp;size=48");
    out += "</spaceIcon></KZN></ext></workspace>";
}

void appendLeanSpace(std::string& out, std::uint64_t number)
{
    out += "<workspace>";
    element(out, "workspaceID", identity("ws-", number));
    element(out, "workspaceName", words(number, 2));
    element(out, "userID", identity("us-", number / 8));
    element(out, "type", "0");
    element(out, "isTemplate", "false");
    out += "</workspace>";
}

void appendInvitation(std::string& out, std::uint64_t number)
{
    out += "<spaceInvite>";
    element(out, "spaceInviteID", identity("in-", number));
    element(out, "expires_d", "2031-05-17T12:00:00Z");
    element(out, "lastModifiedTime", "2031-04-17T12:00:00Z");
    element(out, "status", "pending");
    element(out, "workspaceID", identity("ws-", 1'000'000 + number));
    element(out, "createTime", "2031-04-17T12:00:00Z");
    element(out, "statusChanged_d", "2031-04-17T12:00:00Z");
    element(out, "userDescriptor", userNameOf(0));
    element(out, "userName", userNameOf(0));
    element(out, "workspaceName", nameOf(1'000'000 + number));
    element(out, "ownerID", identity("us-", number));
    element(out, "ownerName", userNameOf(number));
    element(out, "inviteType", "1");
    element(out, "inviteAs", number % 8 == 0 ? "KZN:SpaceAdmin" : "KZN:SpaceMember");
    out += "</spaceInvite>";
}

void appendRole(std::string& out, std::uint64_t number)
{
    const bool admin = number % 16 == 0;
    out += "<workspace><roles><role>";
    element(out, "roleID", admin ? "KZN:SpaceAdmin" : "KZN:SpaceMember");
    element(out, "roleName", admin ? "Administrator" : "Member");
    out += "</role></roles>";
    element(out, "workspaceID", identity("ws-", number));
    out += "</workspace>";
}

}  // namespace

std::string spaceListReply(int spaces)
{
    const auto count = static_cast<std::uint64_t>(spaces);
    std::string out = "<kznapi><response><result>SUCCESS</result></response><return><step>";
    for (std::uint64_t i = 0; i < count; ++i) appendSpace(out, i);
    out += "</step><step>";
    for (std::uint64_t i = 0; i < count / 10; ++i) appendInvitation(out, i);
    out += "</step><step><user><workspaces>";
    for (std::uint64_t i = 0; i < count; ++i) appendRole(out, i);
    out += "</workspaces></user></step></return></kznapi>";
    return out;
}

std::string leanSpaceListReply(int spaces)
{
    const auto count = static_cast<std::uint64_t>(spaces);
    std::string out = "<kznapi><response><result>SUCCESS</result></response><return><step>";
    for (std::uint64_t i = 0; i < count; ++i) appendLeanSpace(out, i);
    out += "</step><step/><step><user><workspaces>";
    for (std::uint64_t i = 0; i < count; ++i) appendRole(out, i);
    out += "</workspaces></user></step></return></kznapi>";
    return out;
}

std::string spaceListBytes(std::size_t bytes)
{
    std::string xml = spaceListReply(static_cast<int>(bytes / 500));
    while (xml.size() < bytes) xml += xml;
    while ((static_cast<unsigned char>(xml[bytes]) & 0xC0) == 0x80) ++bytes;
    xml.resize(bytes);
    return xml;
}

}  // namespace kzn::bench
