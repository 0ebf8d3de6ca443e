#include "service/tape/Recorder.h"

#include <iostream>

#include "service/base/Refusal.h"
#include "service/tape/Headers.h"

namespace service::tape {

namespace {

// The file of a form stays as it is, byte for byte; it comes last.
std::size_t textSize(const http::Request& request)
{
    const std::size_t file = isMultipart(request.contentType) ? request.body.find("; filename=\"") : std::string::npos;
    return file == std::string::npos ? request.body.size() : file;
}

http::Request onward(const http::Request& request, const Origin& own, const Origin& upstream)
{
    http::Request out = request;
    const std::size_t text = textSize(request);
    out.target = withOrigin(request.target, own, upstream);
    out.body = withOrigin(std::string_view(request.body).substr(0, text), own, upstream) + request.body.substr(text);
    return out;
}

http::Response back(http::Response response, const Origin& own, const Origin& upstream)
{
    const bool isText = placeOf(response.contentType) == Place::xml || response.contentType.starts_with("text/");
    if (isText) response.body = withOrigin(response.body, upstream, own);
    for (auto& [name, value] : response.headers) {
        if (isSameName(name, "Location")) value = withOrigin(value, upstream, own);
    }
    return response;
}

}  // namespace

Recorder::Recorder(Upstream& upstream, TapeFile file)
    : upstream_(upstream), scribe_(upstream.origin().spellings()), file_(std::move(file))
{
    file_.write(scribe_.texts());
}

http::Response Recorder::pass(const http::Request& request, const Origin& own)
{
    const http::Request sent = onward(request, own, upstream_.origin());
    http::Response response;
    try {
        response = upstream_.ask(sent);
    } catch (const NoConnection& error) {
        std::clog << "not on the tape: " << error.what() << std::endl;
        return http::refusal(502, std::string("the service does not answer: ") + error.what(), exceptionid::kInternal);
    }
    const std::string reason = scribe_.take(sent, response);
    if (reason.empty()) file_.write(scribe_.texts());
    else std::clog << "not on the tape: " << reason << std::endl;
    return back(std::move(response), own, upstream_.origin());
}

}  // namespace service::tape
