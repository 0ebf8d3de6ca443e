// The stand-in service with any request of a signed-in user. The first line of the input is the target, the second the
// Content-Type; the rest is the body. "CRED" in target and body stands for the user's credential.
#include <expat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <pugixml.hpp>
#include <string>

#include "fuzz/Check.h"
#include "service/http/Router.h"
#include "service/seed/Seed.h"
#include "service/store/Database.h"

namespace {

namespace fs = std::filesystem;
using service::http::Request;
using service::http::Response;

std::string resultOf(const pugi::xml_document& reply)
{
    return reply.child("kznapi").child("response").child("result").text().get();
}

/// Where a file costs no disk, if there is such a place.
fs::path fastFolder()
{
    return fs::is_directory("/dev/shm") ? fs::path("/dev/shm") : fs::temp_directory_path();
}

/// A data file with the demo organisation in which Anna is signed in; every input finds it as it was at first. (What is
/// refused changes nothing.)
class World {
public:
    World() : folder_(fastFolder() / ("pvwapi-service-fuzz-" + std::to_string(getpid())))
    {
        settings_.sessionDuration = 1LL << 40;  // longer than any run
        fs::create_directories(folder_);
        service::store::Database database((folder_ / "first").string());
        service::seed::fillDemo(database);
        const Response reply = service::http::Router(database, settings_)
                                   .answer({"POST", "/kznconnect/op.do", "application/x-www-form-urlencoded",
                                            "cmd=login&username=anna&password=anna-demo-1"});
        pugi::xml_document document;
        document.load_string(reply.body.c_str());
        cred_ = document.child("kznapi").child("securityContext").child("cred").text().get();
        fuzz::check(!cred_.empty(), "Anna is signed in");
    }
    ~World()
    {
        database_.reset();
        fs::remove_all(folder_);
    }
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    Response answer(const Request& request)
    {
        if (!database_) database_ = copy();
        Response response = service::http::Router(*database_, settings_).answer(request);
        if (response.body.find("<result>FAILURE</result>") == std::string::npos)
            database_.reset();  // it may be another
        return response;
    }

    std::string withCred(std::string_view text) const
    {
        std::string whole(text);
        const std::size_t at = whole.find("CRED");
        if (at != std::string::npos) whole.replace(at, 4, cred_);
        return whole;
    }

private:
    std::unique_ptr<service::store::Database> copy() const
    {
        const fs::path file = folder_ / "now";
        for (const char* rest : {"", "-wal", "-shm"}) fs::remove(file.string() + rest);
        fs::copy_file(folder_ / "first", file);
        return std::make_unique<service::store::Database>(file.string());
    }

    fs::path folder_;
    service::Settings settings_;
    std::string cred_;
    std::unique_ptr<service::store::Database> database_;
};

std::string_view takeLine(std::string_view& input)
{
    const std::size_t end = std::min(input.find('\n'), input.size());
    const std::string_view line = input.substr(0, end);
    input.remove_prefix(std::min(end + 1, input.size()));
    return line;
}

bool isWellFormed(const std::string& text)
{
    const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser(XML_ParserCreate("UTF-8"), XML_ParserFree);
    return XML_Parse(parser.get(), text.data(), static_cast<int>(text.size()), XML_TRUE) == XML_STATUS_OK;
}

void checkReply(const Response& response)
{
    if (response.contentType.find("text/xml") == std::string::npos) return;  // a picture
    fuzz::check(isWellFormed(response.body), "well-formed");
    pugi::xml_document reply;
    reply.load_buffer(response.body.data(), response.body.size());
    const std::string result = resultOf(reply);
    fuzz::check(result == "SUCCESS" || result == "FAILURE", "an outcome");
    if (result == "SUCCESS") return;
    const pugi::xml_node outcome = reply.child("kznapi").child("response");
    fuzz::check(!outcome.child("reason").text().empty(), "a failure has a reason");
    fuzz::check(!outcome.child("exceptionID").text().empty(), "a failure has an identifier");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static World world;
    std::string_view input = fuzz::bytes(data, size);
    Request request;
    request.target = world.withCred(takeLine(input));
    request.contentType = takeLine(input);
    request.method = request.contentType.empty() ? "GET" : "POST";
    request.body = world.withCred(input);
    checkReply(world.answer(request));
    return 0;
}
