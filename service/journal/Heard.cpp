#include "service/journal/Heard.h"

#include <utility>

#include "service/base/Refusal.h"
#include "service/http/Multipart.h"

namespace service::journal {

namespace {

constexpr std::size_t kReplyHead = 512;  // says what became of the request

// What cannot be read has no fields; the reply says why.
std::vector<std::pair<std::string, std::string>> fieldsOfUpload(const http::Request& request)
{
    std::vector<std::pair<std::string, std::string>> fields;
    try {
        const http::MultipartForm parts = http::readMultipart(request.contentType, request.body);
        for (const std::string& name : parts.names) fields.emplace_back(name, parts.form.text(name));
        if (parts.hasFile) {
            const std::string size = std::to_string(parts.file.content.size()) + " bytes";
            fields.emplace_back("file", parts.file.fileName + ", " + size);
        }
    } catch (const Refusal&) {
        fields.clear();
    }
    return fields;
}

}  // namespace

Heard heardOf(http::Request request, const http::Response& response)
{
    Heard heard;
    heard.bytesOut = request.isPost() ? request.body.size() : http::queryOf(request.target).size();
    heard.bytesIn = response.body.size();
    if (request.contentType.starts_with("multipart/")) {
        heard.uploaded = fieldsOfUpload(request);
        request.body = {};
    }
    heard.request = std::move(request);
    heard.request.headers.clear();
    heard.response.status = response.status;
    heard.response.contentType = response.contentType;
    heard.response.user = response.user;
    heard.response.fault = response.fault;
    if (response.contentType.starts_with("text/")) heard.response.body = response.body.substr(0, kLongestText + 1);
    return heard;
}

Heard headOf(const Heard& heard)
{
    Heard head;
    head.number = heard.number;
    head.time = heard.time;
    head.took = heard.took;
    head.request.method = heard.request.method;
    head.request.target = http::pathOf(heard.request.target);
    head.response.status = heard.response.status;
    head.response.contentType = heard.response.contentType;
    head.response.body = heard.response.body.substr(0, kReplyHead);
    head.response.user = heard.response.user;
    head.response.fault = heard.response.fault;
    head.bytesOut = heard.bytesOut;
    head.bytesIn = heard.bytesIn;
    head.isHead = true;
    return head;
}

std::size_t sizeOf(const Heard& heard)
{
    std::size_t size =
        sizeof heard + heard.request.target.size() + heard.request.body.size() + heard.response.body.size();
    for (const auto& [name, value] : heard.uploaded) size += name.size() + value.size();
    return size;
}

}  // namespace service::journal
