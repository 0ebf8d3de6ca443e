// Counters of workspaces, real-time events in them, and records of meetings.
#include <array>

#include "client/Operation.h"
#include "records/Events.h"
#include "records/Number.h"

using namespace wapi;

namespace {

constexpr unsigned kWorkspace = 11;

// Both counts come in one shape and differ in the name of the number.
class CountResponse : public CXMLWapiCommonResponse {
public:
    explicit CountResponse(PathPiece countName)
    {
        listen(kWorkspace, kDirectReply, "Results/workspace/", {{"workspaceID/", &workspaceID_}, {countName, &count_}});
    }

    void OnEndNodeListEvent(unsigned id) override
    {
        CXMLWapiCommonResponse::OnEndNodeListEvent(id);
        if (id != kWorkspace) return;
        SPACE_COUNT_ITEM& item = items.emplace_back();
        item.workspaceID = std::exchange(workspaceID_, {});
        item.count = toInt(std::exchange(count_, {}));
    }

    std::vector<SPACE_COUNT_ITEM> items;

private:
    CStringT workspaceID_;
    CStringT count_;
};

class CXMLWapiGetNotificationCountResponse : public CountResponse {
public:
    CXMLWapiGetNotificationCountResponse() : CountResponse("notificationCount/") {}
};

class CXMLWapiGetActivityResponse : public CountResponse {
public:
    CXMLWapiGetActivityResponse() : CountResponse("activityValue/") {}
};

// One task answers both; the credential leads and goes out as it stands.
FormBody countRequest(const CStringT& cred)
{
    FormBody body;
    body.literal("cred=", cred, "&cmd=execute&task=GetWorkspaceNotificationCount&xml=");
    return body;
}

struct EventText {
    std::string_view name;
    std::string_view display;
};

constexpr std::array<EventText, 6> kEvents{{
    {"START_MEETING", "Meeting Started"},
    {"START_VOICE", "Voice Started"},
    {"START_TELEPHONY", "Telephony Started"},
    {"END_MEETING", "Meeting Ended"},
    {"END_VOICE", "Voice Ended"},
    {"END_TELEPHONY", "Telephony Ended"},
}};

}  // namespace

int CWapiClient::getSpaceNotify(const CStringT& cred, std::vector<SPACE_COUNT_ITEM>& items)
{
    return operation("CWapiClient::getSpaceNotify", Timer::rearm, [&] {
        FormBody body = countRequest(cred);
        body.more("<getCount>");
        for (const SPACE_COUNT_ITEM& item : items)
            body.more("<workspace><workspaceID>", item.workspaceID, "</workspaceID></workspace>");
        body.more("</getCount>");

        CXMLWapiGetNotificationCountResponse reply;
        if (!post(body, reply)) return 0;
        items = std::move(reply.items);
        return 1;
    });
}

int CWapiClient::getSpaceActivity(const CStringT& cred, std::vector<SPACE_COUNT_ITEM>& items)
{
    return operation("CWapiClient::getSpaceActivity", Timer::rearm, [&] {
        FormBody body = countRequest(cred);
        body.more("<getActivity>");
        for (const SPACE_COUNT_ITEM& item : items)
            body.more("<workspace><workspaceID>", item.workspaceID, "</workspaceID><unreadMessageCount>",
                      item.unreadMessageCount, "</unreadMessageCount><activeMembersCount>", item.activeMembersCount,
                      "</activeMembersCount></workspace>");
        body.more("</getActivity>");

        CXMLWapiGetActivityResponse reply;
        if (!post(body, reply)) return 0;
        items = std::move(reply.items);
        return 1;
    });
}

int CWapiClient::sendNotificationEvent(const CStringT& cred, EVENT_NAME event, const CStringT& workspaceID,
                                       const CStringT& workspaceName, const CStringT& message,
                                       const CStringT& specificTag, const CStringT& senderUserName)
{
    return operation("CWapiClient::sendNotificationEvent", Timer::rearm, [&] {
        const auto index = static_cast<std::size_t>(event);
        if (index >= kEvents.size()) return refuse("unknown event.");
        const auto& [name, display] = kEvents[index];

        FormBody body;
        body.encoded("cmd=", "execute").encoded("&task=", "SendNotificationEvent").encoded("&cred=", cred);
        body.encoded("&xml=", "<eventData><eventNotification><eventType>REALTIME_COMMUNICATION_EVENT</eventType>",
                     "<eventDisplayName><en_US>", display, "</en_US></eventDisplayName><eventName>", name,
                     "</eventName>");
        body.more("<eventWorkspaceID>", workspaceID, "</eventWorkspaceID>");
        body.more("<eventWorkspaceName>", Cdata{workspaceName}, "</eventWorkspaceName>");
        body.more("<eventMessage><en_US>", Cdata{message}, "</en_US></eventMessage>");
        body.more("<eventExtendedData><mySpecificTag>", specificTag, "</mySpecificTag></eventExtendedData>");
        body.more("<eventSender><userName>", senderUserName, "</userName></eventSender>");
        body.more("</eventNotification></eventData>");

        CXMLWapiSetResponse reply;
        return post(body, reply);
    });
}

int CWapiClient::writeMeetingRecord(const CStringT& cred, const CStringT& workspaceID, const CStringT& siteName,
                                    const CStringT& meetingID, const CStringT& hostID, const CStringT& sessionName)
{
    return operation("CWapiClient::writeMeetingRecord", Timer::rearm, [&] {
        FormBody body;
        body.literal("cmd=create&type=thng").encoded("&cred=", cred);
        body.encoded("&xml=", "<thing><thingName>MeetingRecording</thingName><ext><KZN><meetingRecording>");
        body.more("<workspaceID>", workspaceID, "</workspaceID><siteName>", siteName, "</siteName>");
        body.more("<meetingID>", meetingID, "</meetingID><hostQueltID>", hostID, "</hostQueltID>");
        body.more("<sessionName>", sessionName, "</sessionName><status>0</status>");
        body.more("</meetingRecording></KZN></ext></thing>");

        CXMLWapiCommonResponse reply;
        return post(body, reply);
    });
}
