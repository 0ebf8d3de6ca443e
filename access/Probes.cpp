// What the user may do with a workspace, a document or a discussion room.
#include "access/AccessReply.h"
#include "client/Operation.h"

using namespace wapi;

namespace {

class space_access_response : public CXMLWapiCommonResponse {
public:
    SpaceAccessPart part{*this, kDirectReply};
};

class doc_access_resp : public CXMLWapiCommonResponse {
public:
    doc_access_resp()
    {
        select(kDirectReply, {{"set-doc/access/", &access.setDocAccess},
                              {"set-doc/reason/", &access.setDocReason},
                              {"delete-doc/access/", &access.deleteDocAccess},
                              {"delete-doc/reason/", &access.deleteDocReason}});
    }

    DOC_ACCESS access;
};

class room_access_resp : public CXMLWapiCommonResponse {
public:
    room_access_resp()
    {
        select(kDirectReply, {{"set-chatRoom/access/", &access.setChatRoomAccess},
                              {"set-chatRoom/reason/", &access.setChatRoomReason},
                              {"delete-chatRoom/access/", &access.deleteChatRoomAccess},
                              {"delete-chatRoom/reason/", &access.deleteChatRoomReason},
                              {"create-chatEntry/access/", &access.createChatEntryAccess},
                              {"create-chatEntry/reason/", &access.createChatEntryReason}});
    }

    ROOM_ACCESS access;
};

// Either of the two low bits asks for both tests of the workspace itself.
constexpr unsigned long kWorkspaceTests = 0x03;
constexpr unsigned long kJoinTest = 0x20;

// Up to the value of xml, which the tests fill.
FormBody probe(const CStringT& cred)
{
    FormBody body;
    body.literal("cmd=execute&task=ProbeAccess").encoded("&cred=", cred).literal("&xml=");
    return body;
}

}  // namespace

CStringT CWapiClient::buildProbeSpaceAccessRequest(const CStringT& workspaceID, unsigned long tests)
{
    FormBody list;
    list.literal("<tests>");
    if (tests & kWorkspaceTests)
        list.literal("<set-workspace><id>", workspaceID, "</id></set-workspace><delete-workspace><id>", workspaceID,
                     "</id></delete-workspace>");
    if (tests & kJoinTest) list.literal("<JoinSpace/>");
    list.literal("</tests>");
    return list.taken();
}

int CWapiClient::probeSpaceAccess(const CStringT& cred, const CStringT& workspaceID, SPACE_ACCESS& access,
                                  unsigned long tests)
{
    return operation("CWapiClient::probeSpaceAccess", Timer::rearm, [&] {
        FormBody body = probe(cred);
        body.more(buildProbeSpaceAccessRequest(workspaceID, tests));

        space_access_response reply;
        if (!post(body, reply)) return 0;
        access = std::move(reply.part.access);
        return 1;
    });
}

int CWapiClient::probeSpaceAccess2(const CStringT& cred, SPACE_ACCESS& access)
{
    return operation("CWapiClient::probeSpaceAccess2", Timer::leave, [&] {
        FormBody body = probe(cred);
        body.more("<tests><BulkSpaceInvite/><create-chatRoom/><create-doc/></tests>");

        space_access_response reply;
        if (!post(body, reply)) return 0;
        access = std::move(reply.part.access);
        return 1;
    });
}

int CWapiClient::probeDocAccess(const CStringT& cred, const CStringT& docID, DOC_ACCESS& access)
{
    return operation("CWapiClient::probeDocAccess", Timer::rearm, [&] {
        FormBody body = probe(cred);
        body.more("<tests><set-doc><id>", docID, "</id></set-doc><delete-doc><id>", docID,
                  "</id></delete-doc></tests>");

        doc_access_resp reply;
        if (!post(body, reply)) return 0;
        access = std::move(reply.access);
        return 1;
    });
}

int CWapiClient::probeChatRoomAccess(const CStringT& cred, const CStringT& roomID, ROOM_ACCESS& access)
{
    return operation("CWapiClient::probeChatRoomAccess", Timer::leave, [&] {
        FormBody body = probe(cred);
        body.more("<tests><delete-chatRoom><id>", roomID, "</id></delete-chatRoom><set-chatRoom><id>", roomID,
                  "</id></set-chatRoom><create-chatEntry><id>", roomID, "</id></create-chatEntry></tests>");

        room_access_resp reply;
        if (!post(body, reply)) return 0;
        access = std::move(reply.access);
        return 1;
    });
}
