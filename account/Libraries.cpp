// Libraries of workspace templates and of applications.
#include "records/Libraries.h"
#include "client/Operation.h"

using namespace wapi;

namespace {

enum ListID : unsigned { kLibrary = 8, kTemplate = 9, kApp = 18, kTopLevelApp = 19 };

constexpr PathPiece kLibraryPath = "libraries/library/";

class CXMLWapiGetLibrarysResponse : public CXMLWapiCommonResponse {  // sic
public:
    CXMLWapiGetLibrarysResponse()
    {
        listen(
            kLibrary, kDirectReply, kLibraryPath,
            {{"libraryName/", &library_.name}, {"libraryID/", &library_.ID}, {"librayType/", &libraryType_}});  // sic
        listen(kTemplate, kDirectReply, "libraries/library/template/",
               {{"templateName/", &template_.name},
                {"templateID/", &template_.ID},
                {"tempalteType/", &templateType_},  // sic
                {"description/text/", &template_.description}});
    }

    void OnEndNodeListEvent(unsigned id) override
    {
        CXMLWapiCommonResponse::OnEndNodeListEvent(id);
        if (id == kTemplate) {
            template_.SetType(std::exchange(templateType_, {}));
            library_.templates.push_back(std::exchange(template_, {}));
        }
        if (id == kLibrary) {
            const int type = toInt(std::exchange(libraryType_, {}));
            library_.type = type >= 1 && type <= 3 ? type : 0;
            libraries.push_back(std::exchange(library_, {}));
        }
    }

    std::vector<library_t> libraries;

private:
    library_t library_;
    CStringT libraryType_;
    CZelTemplateItem template_;
    CStringT templateType_;
};

class get_lib_with_app_resp : public CXMLWapiCommonResponse {
public:
    get_lib_with_app_resp()
    {
        listen(kLibrary, kDirectReply, kLibraryPath,
               {{"libraryName/", &library_.name}, {"libraryID/", &library_.ID}, {"libraryType/", &library_.type}});
        listenToApps("libraries/library/widget/");
        // Told first, so that the application is known for what it is when it ends.
        listen(kTopLevelApp, kDirectReply, "libraries/library/topLevelApp/",
               {{"appType/", &app_.appType},
                {"identity/description/", &app_.identityDescription},
                {"identity/name/", &app_.identityName}});
        listenToApps("libraries/library/topLevelApp/");
    }

    void OnEndNodeListEvent(unsigned id) override
    {
        CXMLWapiCommonResponse::OnEndNodeListEvent(id);
        if (id == kTopLevelApp) app_.topLevel = true;
        if (id == kApp) library_.apps.push_back(std::exchange(app_, {}));
        if (id == kLibrary) libraries.push_back(std::exchange(library_, {}));
    }

    std::vector<library2_t> libraries;

private:
    void listenToApps(PathPiece list)
    {
        listen(kApp, kDirectReply, list,
               {{"widgetName/", &app_.name},
                {"widgetID/", &app_.ID},
                {"currentDir/", &app_.currentDir},
                {"status/", &app_.status},
                {"appConsPackage/", &app_.package}});
    }

    library2_t library_;
    library_app_t app_;
};

}  // namespace

int CWapiClient::getLibraries(const CStringT& cred, int withTemplates, int withWidgets, int readOnly,
                              std::vector<library_t>& libraries)
{
    return operation("CWapiClient::getLibrarys", Timer::rearm, [&] {  // sic
        FormBody body;
        body.encoded("cmd=", "execute").encoded("&cred=", cred).encoded("&task=", "GetUserLibraries");
        body.encoded("&xml=", "<library><with><widget>", trueFalse(withWidgets), "</widget><template>",
                     trueFalse(withTemplates), "</template></with><readonly>", trueFalse(readOnly),
                     "</readonly></library>");

        CXMLWapiGetLibrarysResponse reply;
        if (!post(body, reply)) return 0;
        if (!reply.libraries.empty()) libraries = std::move(reply.libraries);  // an empty list leaves the caller's
        return 1;
    });
}

int CWapiClient::addTemplateToLibrary(const CStringT& cred, const CStringT& groupID, const CStringT& templateID)
{
    return operation("CWapiClient::addTemplateToLibrary", Timer::rearm, [&] {
        FormBody body;
        body.encoded("cmd=", "add").encoded("&type=", "grp").encoded("&cred=", cred).encoded("&id=", groupID);
        body.encoded("&xml=", "<group><templates><template><templateID>", templateID,
                     "</templateID></template></templates></group>");

        CXMLWapiSetResponse reply;
        return post(body, reply);
    });
}

int CWapiClient::getUserLibrariesWithApps(const CStringT& cred, int readOnly, int withTopLevelApps,
                                          std::vector<library2_t>& libraries)
{
    return operation("CWapiClient::getUserLibrariesWithApps", Timer::rearm, [&] {
        // The blank before <with>, and widgets that are never asked for, are the request's own.
        FormBody body;
        body.literal("cmd=execute&task=GetUserLibrariesWithApps").encoded("&cred=", cred);
        body.encoded("&xml=", "<library><readonly>", trueFalse(readOnly),
                     "</readonly> <with><widget>false</widget><topLevelApp>", trueFalse(withTopLevelApps),
                     "</topLevelApp></with></library>");

        get_lib_with_app_resp reply;
        if (!post(body, reply)) return 0;
        libraries = std::move(reply.libraries);
        return 1;
    });
}
