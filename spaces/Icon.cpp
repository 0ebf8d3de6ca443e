// The picture of a workspace: up as a multipart form, down as a file.
#include <array>

#include "client/Operation.h"
#include "pvutil/Files.h"
#include "pvutil/Folders.h"
#include "pvutil/HttpClient.h"
#include "spaces/IconName.h"

using namespace wapi;
using namespace kzn::pvutil;

namespace {

class UploadResponse : public CXMLWapiMessage {
public:
    UploadResponse() { select(kDirectReply, {{"url/", &url}}); }

    CStringT url;
};

constexpr int kFound = 200;
constexpr std::size_t kMostPicture = std::size_t{64} << 20;
constexpr std::string_view kNoConnection =
    "Network error. Unable to connect to ";  // here a blank parts it from the URL

#define PV_BOUNDARY "---------------------------7d73d42312zelkor"
constexpr std::string_view kHeader = "Content-Type: multipart/form-data; boundary=" PV_BOUNDARY;
constexpr std::string_view kOpening = "--" PV_BOUNDARY;
constexpr std::string_view kClosing = "\r\n--" PV_BOUNDARY "--";
#undef PV_BOUNDARY

// The text of the multipart form up to the picture.
class UploadHead {
public:
    UploadHead& field(std::string_view name, std::string_view value)
    {
        part(name).append("\"\r\n\r\n").append(value).append("\r\n");
        return *this;
    }
    UploadHead& field(std::string_view name, const CStringT& value) { return field(name, stringex::ToUtf8(value)); }

    // The picture is declared as one kind, whatever it is.
    UploadHead& file(std::string_view name, const CStringT& path)
    {
        part(name).append("\"; filename=\"").append(stringex::ToUtf8(path));
        text_.append("\"\r\nContent-Type: image/jpeg\r\n\r\n");
        return *this;
    }

    std::string_view text() const noexcept { return text_; }

private:
    std::string& part(std::string_view name)
    {
        return text_.append(kOpening).append("\r\nContent-Disposition: form-data; name=\"").append(name);
    }

    std::string text_;
};

UploadHead headOf(const CStringT& cred, const CStringT& xml, const CStringT& filePath)
{
    UploadHead head;
    head.field("cred", cred).field("name", fileNameOf(filePath)).field("cmd", "execute");
    head.field("task", "ManageSpaceIcon").field("xml", xml).field("fileFields", "theFile").file("theFile", filePath);
    return head;
}

}  // namespace

int CWapiClient::SetSpaceIcon(const CStringT& cred, const CStringT& workspaceID, const CStringT& filePath,
                              CStringT& url)
{
    return operation("CWapiClient::SetSpaceIcon", Timer::rearm, [&] {
        std::string picture;
        const FileResult read = readFile(filePath, kMostPicture, picture);
        if (read != FileResult::done)
            return refuse(read == FileResult::tooLarge ? "Picture too large: " : "Unable to read the picture: ",
                          filePath);

        FormBody xml;
        xml.literal("<code><workspaceID>", workspaceID, "</workspaceID><dmsURL>", dmsURL, "</dmsURL></code>");
        const UploadHead head = headOf(cred, xml, filePath);
        const std::array<std::string_view, 3> body{head.text(), picture, kClosing};

        CZelHttpClient http;
        prepare(http);
        http.OnProgress(transferProgress);
        const int status = http.Request(uploadURL, HTTP_METHOD::POST, body, wide(kHeader), HttpOption::kUpload);
        keepCause(http);
        networkError = static_cast<int>(status == CZelHttpClient::kNoConnection);
        if (networkError != 0) return refuse(kNoConnection, uploadURL);
        UploadResponse reply;
        if (!judge(http, reply)) return 0;
        url = std::move(reply.url);  // the reply's credential is read and the client's own stays
        return 1;
    });
}

int CWapiClient::GetSpaceIcon(const CStringT& cred, const CStringT& iconURL, CStringT& localPath)
{
    return operation("CWapiClient::GetSpaceIcon", Timer::leave, [&] {
        const CStringT address = iconURL + wide("?cred=") + cred;
        CZelHttpClient http;
        prepare(http);
        http.OnProgress(transferProgress);
        const int status = http.Request(address, HTTP_METHOD::GET, CStringT(), CStringT(), HttpOption::kDownload);
        keepCause(http);
        networkError = status == CZelHttpClient::kNoConnection ? 1 : 0;
        if (status != kFound) return refuse(kNoConnection, address);

        const auto folder = temporaryFolder();
        if (!folder) {
            trace(TraceLevel::error, "get temporary dir failed.");
            return refuse("get temporary dir failed.", CStringT());
        }
        CStringT path = *folder + iconFileName(iconURL);
        if (replaceFile(path, http.GetResponse()) != FileResult::done)
            return refuse("Unable to write the file: ", path);
        lastMessage.clear();
        localPath = std::move(path);
        return 1;
    });
}
