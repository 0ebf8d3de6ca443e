// The same exchange and the parse of its reply by libcurl and expat alone: bench_first_plain <URL>
#include <curl/curl.h>
#include <expat.h>

#include <string>

namespace {

std::size_t keep(const char* bytes, std::size_t one, std::size_t count, void* reply)
{
    static_cast<std::string*>(reply)->append(bytes, one * count);
    return one * count;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc < 2) return 2;
    std::string reply;
    curl_global_init(CURL_GLOBAL_DEFAULT);
    CURL* const handle = curl_easy_init();
    curl_easy_setopt(handle, CURLOPT_URL, argv[1]);
    curl_easy_setopt(handle, CURLOPT_POSTFIELDS, "cmd=get&type=sessionInfo&id=sessioninfo&cred=cred");
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, keep);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, &reply);
    const bool isWell = curl_easy_perform(handle) == CURLE_OK;
    curl_easy_cleanup(handle);
    const XML_Parser parser = XML_ParserCreate("UTF-8");
    const bool isRead =
        XML_Parse(parser, reply.data(), static_cast<int>(reply.size()), XML_TRUE) == XML_STATUS_OK && !reply.empty();
    XML_ParserFree(parser);
    return isWell && isRead ? 0 : 1;
}
