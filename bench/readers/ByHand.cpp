// What a host's engineers would write instead, with care: the system's parser, element names looked up in a table of
// their place, texts gathered in one buffer and converted in one pass.
#include <expat.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "bench/readers/Readers.h"

namespace kzn::bench {

namespace {

using CharT = CStringT::value_type;

struct FreeParser {
    void operator()(XML_Parser parser) const noexcept { XML_ParserFree(parser); }
};
using Parser = std::unique_ptr<XML_ParserStruct, FreeParser>;

// Most texts are ASCII. The reply is known to be well-formed: the parser has seen to it.
void convert(const std::string& utf8, CStringT& text)
{
    text.clear();
    text.reserve(utf8.size());
    for (std::size_t at = 0; at < utf8.size();) {
        const auto byte = [&](std::size_t step) { return static_cast<unsigned char>(utf8[at + step]); };
        const unsigned first = byte(0);
        char32_t point = first;
        std::size_t size = 1;
        if (first >= 0xF0) {
            point = (first & 7U) << 18 | (byte(1) & 63U) << 12 | (byte(2) & 63U) << 6 | (byte(3) & 63U);
            size = 4;
        } else if (first >= 0xE0) {
            point = (first & 15U) << 12 | (byte(1) & 63U) << 6 | (byte(2) & 63U);
            size = 3;
        } else if (first >= 0xC0) {
            point = (first & 31U) << 6 | (byte(1) & 63U);
            size = 2;
        }
        at += size;
        if (point < 0x10000) {
            text += static_cast<CharT>(point);
        } else {
            text += static_cast<CharT>(0xD800 + ((point - 0x10000) >> 10));
            text += static_cast<CharT>(0xDC00 + (point & 0x3FF));
        }
    }
}

template <typename Record>
struct Text {
    const char* name;
    CStringT Record::*member;
};

constexpr std::array<Text<SpaceForList>, 9> kSpaceTexts = {{{"workspaceID", &SpaceForList::workspaceID},
                                                            {"workspaceName", &SpaceForList::workspaceName},
                                                            {"userID", &SpaceForList::userID},
                                                            {"userName", &SpaceForList::userName},
                                                            {"type", &SpaceForList::type},
                                                            {"isTemplate", &SpaceForList::isTemplate},
                                                            {"namespaceID", &SpaceForList::namespaceID},
                                                            {"text", &SpaceForList::description},
                                                            {"url", &SpaceForList::spaceIconURL}}};
constexpr std::array<Text<CZelSpaceInvite>, 12> kInviteTexts = {
    {{"spaceInviteID", &CZelSpaceInvite::spaceInviteID},
     {"expires_d", &CZelSpaceInvite::expires},
     {"lastModifiedTime", &CZelSpaceInvite::lastModifiedTime},
     {"status", &CZelSpaceInvite::status},
     {"workspaceID", &CZelSpaceInvite::workspaceID},
     {"createTime", &CZelSpaceInvite::createTime},
     {"statusChanged_d", &CZelSpaceInvite::statusChanged},
     {"userDescriptor", &CZelSpaceInvite::userDescriptor},
     {"userName", &CZelSpaceInvite::userName},
     {"workspaceName", &CZelSpaceInvite::workspaceName},
     {"ownerID", &CZelSpaceInvite::ownerID},
     {"ownerName", &CZelSpaceInvite::ownerName}}};

class Machine {
public:
    explicit Machine(Listing& listing) : listing_(listing) {}

    bool read(std::string_view reply)
    {
        const Parser parser(XML_ParserCreate("UTF-8"));
        XML_SetUserData(parser.get(), this);
        XML_SetElementHandler(parser.get(), &Machine::onStart, &Machine::onEnd);
        XML_SetCharacterDataHandler(parser.get(), &Machine::onText);
        if (XML_Parse(parser.get(), reply.data(), static_cast<int>(reply.size()), XML_TRUE) != XML_STATUS_OK)
            return false;
        std::ranges::stable_sort(roles_, {}, &Role::first);
        for (SpaceForList& space : listing_.spaces) {
            const auto found = std::ranges::lower_bound(roles_, space.workspaceID, {}, &Role::first);
            if (found != roles_.end() && found->first == space.workspaceID) space.role = found->second;
        }
        return isSuccess_;
    }

private:
    using Role = std::pair<CStringT, int>;
    enum class In { reply, space, invitation, roleSpace };

    static Machine& self(void* data) { return *static_cast<Machine*>(data); }
    static void onStart(void* data, const XML_Char* name, const XML_Char**) { self(data).start(name); }
    static void onEnd(void* data, const XML_Char* name) { self(data).end(name); }
    static void onText(void* data, const XML_Char* text, int length)
    {
        self(data).text_.append(text, static_cast<std::size_t>(length));
    }

    void start(const char* name)
    {
        text_.clear();
        if (in_ != In::reply) return;
        if (std::strcmp(name, "workspaces") == 0) areRoles_ = true;
        else if (std::strcmp(name, "workspace") == 0) in_ = areRoles_ ? In::roleSpace : In::space;
        else if (std::strcmp(name, "spaceInvite") == 0) in_ = In::invitation;
    }

    void end(const char* name)
    {
        switch (in_) {
        case In::reply: endInReply(name); break;
        case In::space: endInSpace(name); break;
        case In::invitation: endInInvitation(name); break;
        case In::roleSpace: endInRoleSpace(name); break;
        }
    }

    void endInReply(const char* name)
    {
        if (std::strcmp(name, "result") == 0) isSuccess_ = text_ == "SUCCESS";
    }

    template <typename Record, std::size_t size>
    void take(const std::array<Text<Record>, size>& texts, const char* name, Record& record)
    {
        const auto found = std::find_if(texts.begin(), texts.end(),
                                        [name](const auto& text) { return std::strcmp(text.name, name) == 0; });
        if (found != texts.end()) convert(text_, record.*found->member);
    }

    void endInSpace(const char* name)
    {
        if (std::strcmp(name, "workspace") != 0) return take(kSpaceTexts, name, space_);
        space_.status.assign({'a', 'c', 'c', 'e', 'p', 't', 'e', 'd'});
        listing_.spaces.push_back(std::move(space_));
        space_ = {};
        in_ = In::reply;
    }

    void endInInvitation(const char* name)
    {
        if (std::strcmp(name, "inviteType") == 0) invitation_.inviteType = std::atoi(text_.c_str());
        else if (std::strcmp(name, "inviteAs") == 0) invitation_.inviteAsType = text_ == "KZN:SpaceAdmin" ? 2 : 1;
        else if (std::strcmp(name, "spaceInvite") != 0) take(kInviteTexts, name, invitation_);
        else {
            listing_.invitations.push_back(std::move(invitation_));
            invitation_ = {};
            in_ = In::reply;
        }
    }

    void endInRoleSpace(const char* name)
    {
        if (std::strcmp(name, "roleID") == 0)
            isAdmin_ = isAdmin_ || text_ == "KZN:SpaceAdmin" || text_ == "KZN:Creator";
        else if (std::strcmp(name, "workspaceID") == 0) convert(text_, roleSpace_);
        else if (std::strcmp(name, "workspace") == 0) {
            roles_.emplace_back(std::move(roleSpace_), isAdmin_ ? 2 : 1);
            roleSpace_ = {};
            isAdmin_ = false;
            in_ = In::reply;
        }
    }

    Listing& listing_;
    In in_ = In::reply;
    bool areRoles_ = false;
    bool isSuccess_ = false;
    bool isAdmin_ = false;
    std::string text_;
    SpaceForList space_;
    CZelSpaceInvite invitation_;
    CStringT roleSpace_;
    std::vector<Role> roles_;
};

}  // namespace

bool readByHand(std::string_view reply, Listing& listing)
{
    return Machine(listing).read(reply);
}

bool readBare(std::string_view reply)
{
    const Parser parser(XML_ParserCreate("UTF-8"));
    return XML_Parse(parser.get(), reply.data(), static_cast<int>(reply.size()), XML_TRUE) == XML_STATUS_OK;
}

}  // namespace kzn::bench
