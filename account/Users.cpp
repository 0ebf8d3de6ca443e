// The user's own record, and the names of others.
#include "records/Users.h"
#include "client/Operation.h"

using namespace wapi;

namespace {

enum ListID : unsigned { kProvider = 6, kUser = 17 };

class CXMLWapiGetUserInfoResponse : public CXMLWapiCommonResponse {
public:
    CXMLWapiGetUserInfoResponse()
    {
        select(kDirectReply, {{"user/userID/", &info.userID},
                              {"user/userName/", &info.userName},
                              {"user/email/", &info.email},
                              {"user/namespaces/namespace/namespaceID/", &info.namespaceID},
                              {"user/ISProviders/ISProvider/ISProviderID/", &info.ISProviderID},
                              {"user/ext/KZN/rdqAV/QueltID/", &info.QueltID},
                              {"user/ext/KZN/rdqAV/Password/", &info.Password},
                              {"user/ext/KZN/rdqAV/QueltAVToken/", &info.QueltAVToken},
                              {"user/ext/KZN/rdqAV/QueltDesktopShareURL/", &info.QueltDesktopShareURL},
                              {"user/ext/KZN/rdqAV/QueltAudioOrVisualURL/", &info.QueltAudioOrVisualURL},
                              {"user/ext/KZN/firstName/", &info.firstName},
                              {"user/ext/KZN/lastName/", &info.lastName},
                              {"user/ext/KZN/hostName/", &info.hostName},
                              {"user/ext/KZN/websiteURL/", &info.websiteURL}});
        listen(kProvider, kDirectReply, "user/ISProviders/ISProvider/",
               {{"ISProviderID/", &provider_.ISProviderID},
                {"userName/", &provider_.userName},
                {"namespaceID/", &provider_.namespaceID},
                {"ISProviderName/", &provider_.ISProviderName}});
    }

    void OnEndNodeListEvent(unsigned id) override
    {
        CXMLWapiCommonResponse::OnEndNodeListEvent(id);
        if (id == kProvider) info.ISProviders.push_back(std::exchange(provider_, {}));
    }

    CUserConfigInfo info;

private:
    CZelISProvider provider_;
};

class get_user_profile_response : public CXMLWapiCommonResponse {
public:
    get_user_profile_response()
    {
        listen(kUser, kDirectReply, "user/",
               {{"userID/", &profile_.userID},
                {"ext/KZN/firstName/", &profile_.firstName},
                {"ext/KZN/middleName/", &profile_.middleName},
                {"ext/KZN/lastName/", &profile_.lastName}});
    }

    void OnEndNodeListEvent(unsigned id) override
    {
        CXMLWapiCommonResponse::OnEndNodeListEvent(id);
        if (id == kUser) users.push_back(std::exchange(profile_, {}));
    }

    std::vector<USER_PROFILE> users;

private:
    USER_PROFILE profile_;
};

enum UserField : int { kHostName = 0, kWebsiteURL = 1, kClientBuild = 2, kClientVersion = 3 };

void writeHostFields(FormBody& body, const std::vector<CWapiClient::USER_Field_Value>& fields)
{
    for (const auto& [type, value] : fields) {
        if (type == kHostName) body.more("<hostName>", value, "</hostName>");
        if (type == kWebsiteURL) body.more("<websiteURL>", value, "</websiteURL>");
    }
}

bool isOfClient(const CWapiClient::USER_Field_Value& field) noexcept
{
    return field.type == kClientBuild || field.type == kClientVersion;
}

// The block goes out only where something stands in it.
void writeClientFields(FormBody& body, const std::vector<CWapiClient::USER_Field_Value>& fields)
{
    if (std::none_of(fields.begin(), fields.end(), isOfClient)) return;
    body.more("<client>");
    for (const auto& [type, value] : fields) {
        if (type == kClientBuild) body.more("<build>", value, "</build>");
        if (type == kClientVersion) body.more("<version>", value, "</version>");
    }
    body.more("</client>");
}

}  // namespace

int CWapiClient::getUserConfigureInfo(const CStringT& cred, CUserConfigInfo& info)
{
    return operation("CWapiClient::getUserConfigureInfo", Timer::rearm, [&] {
        FormBody body;
        body.encoded("cmd=", "get").encoded("&cred=", cred).encoded("&type=", "user").literal("&id=current");
        body.encoded("&select=", "userID:email:userName:ext/KZN/rdqAV:ISProviders:ext/KZN/lastName:ext/KZN/firstName:",
                     "ext/KZN/hostName:ext/KZN/websiteURL:namespaces/namespace");

        CXMLWapiGetUserInfoResponse reply;
        if (!post(body, reply)) return 0;
        CStringT ownNamespace = reply.info.namespaceID;
        userID = reply.info.userID;
        namespaceID.swap(ownNamespace);
        info = std::move(reply.info);
        return 1;
    });
}

int CWapiClient::getUserProfile(const CStringT& cred, std::vector<USER_PROFILE>& users)
{
    return operation("CWapiClient::getUserProfile", Timer::rearm, [&] {
        FormBody body;
        body.literal("cmd=execute&task=GetUserProfile").encoded("&cred=", cred).encoded("&xml=", "<users>");
        for (const USER_PROFILE& user : users) body.more("<user><userID>", user.userID, "</userID></user>");
        body.more("</users>");

        get_user_profile_response reply;
        if (!post(body, reply)) return 0;
        users = std::move(reply.users);
        return 1;
    });
}

int CWapiClient::editExtUser(const CStringT& cred, const CStringT& user, std::vector<USER_Field_Value>& fields)
{
    return operation("CWapiClient::editExtUser", Timer::rearm, [&] {
        if (fields.empty()) return 0;

        FormBody body;
        body.encoded("cmd=", "set").encoded("&cred=", cred).encoded("&type=", "user").encoded("&id=", user);
        body.encoded("&xml=", "<user><ext><KZN>");
        writeHostFields(body, fields);
        writeClientFields(body, fields);
        body.more("</KZN></ext></user>");

        CXMLWapiSetResponse reply;
        return post(body, reply);
    });
}
