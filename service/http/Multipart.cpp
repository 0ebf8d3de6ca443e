#include "service/http/Multipart.h"

#include "service/base/Refusal.h"
#include "service/base/Text.h"

namespace service::http {

namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::size_t kMaxHeader = 8192;
constexpr std::size_t kMaxBoundary = 200;

[[noreturn]] void refuse(const std::string& reason)
{
    throw Refusal(exceptionid::kBadRequest, "the upload cannot be read: " + reason);
}

std::string boundaryOf(std::string_view contentType)
{
    constexpr std::string_view kMark = "boundary=";
    const std::size_t at = contentType.find(kMark);
    if (!contentType.starts_with("multipart/form-data") || at == std::string_view::npos) {
        refuse("it is not multipart/form-data with a boundary");
    }
    std::string_view boundary = contentType.substr(at + kMark.size());
    boundary = trimmed(boundary.substr(0, boundary.find(';')));
    if (boundary.size() > 1 && boundary.starts_with('"') && boundary.ends_with('"')) {
        boundary = boundary.substr(1, boundary.size() - 2);
    }
    if (boundary.empty() || boundary.size() > kMaxBoundary) refuse("the boundary is empty or too long");
    return std::string(boundary);
}

// The text in quotes behind `mark`, on its line. A path is sent as it stands and may hold quotes and backslashes, so
// that the file's name ends at the last quote of the line.
bool quotedAfter(std::string_view header, std::string_view mark, bool toLastQuote, std::string& value)
{
    const std::size_t at = header.find(mark);
    if (at == std::string_view::npos) return false;
    const std::string_view rest = header.substr(at + mark.size());
    const std::string_view line = rest.substr(0, rest.find(kLineEnd));
    const std::size_t end = toLastQuote ? line.rfind('"') : line.find('"');
    if (end == std::string_view::npos) refuse("a quote is missing");
    value = line.substr(0, end);
    if (const std::string fault = faultOf(value); !fault.empty()) refuse("a name holds " + fault);
    return true;
}

struct Part {
    std::string name;
    std::string fileName;
    bool isFile = false;
    std::size_t contentAt = 0;
};

Part readHeader(std::string_view text)
{
    const std::size_t end = text.substr(0, kMaxHeader).find("\r\n\r\n");
    if (end == std::string_view::npos) refuse("a part has no end of its header");
    const std::string_view header = text.substr(0, end);
    Part part;
    part.contentAt = end + 4;
    part.isFile = quotedAfter(header, "; filename=\"", true, part.fileName);
    if (!quotedAfter(header, "; name=\"", false, part.name)) refuse("a part has no name");
    return part;
}

// The file comes last and may hold any bytes, the boundary's among them: what ends it is the end of the body.
std::string_view fileContent(std::string_view rest, const std::string& closing)
{
    if (rest.ends_with(kLineEnd)) rest.remove_suffix(kLineEnd.size());
    if (!rest.ends_with(closing)) refuse("the file has no end");
    return rest.substr(0, rest.size() - closing.size());
}

}  // namespace

MultipartForm readMultipart(std::string_view contentType, std::string_view body)
{
    const std::string delimiter = "--" + boundaryOf(contentType);
    if (!body.starts_with(delimiter)) refuse("it does not start with the boundary");
    body.remove_prefix(delimiter.size());
    const std::string next = std::string(kLineEnd) + delimiter;
    MultipartForm result;
    while (!body.starts_with("--")) {
        if (!body.starts_with(kLineEnd)) refuse("a boundary is not at the end of its line");
        Part part = readHeader(body.substr(kLineEnd.size()));
        body.remove_prefix(kLineEnd.size() + part.contentAt);
        if (part.isFile) {
            result.file = {std::move(part.fileName), fileContent(body, next + "--")};
            result.hasFile = true;
            return result;
        }
        const std::size_t end = body.find(next);
        if (end == std::string_view::npos) refuse("the last part has no end");
        if (const std::string fault = faultOf(body.substr(0, end)); !fault.empty()) {
            refuse("the field " + inQuotes(part.name) + " holds " + fault);
        }
        result.names.push_back(part.name);
        result.form.add(std::move(part.name), std::string(body.substr(0, end)));
        body.remove_prefix(end + next.size());
    }
    return result;
}

}  // namespace service::http
