#include "bench/KeptPost.h"

#include "bench/posix/CurlHandles.h"

namespace kzn::bench {

namespace {

std::size_t keep(const char* bytes, std::size_t one, std::size_t count, void* reply)
{
    static_cast<std::string*>(reply)->append(bytes, one * count);
    return one * count;
}

}  // namespace

struct KeptPost::Kept {
    std::string body;
    CurlLines lines{curl_slist_append(nullptr, "User-Agent: pvWapi/1.0")};
    CurlHandle handle{curl_easy_init()};
};

const char* const KeptPost::kName = "a kept libcurl handle";

KeptPost::KeptPost(const std::string& url, std::string_view body) : kept_(std::make_unique<Kept>())
{
    kept_->body = body;
    CURL* const handle = kept_->handle.get();
    curl_easy_setopt(handle, CURLOPT_URL, url.c_str());
    curl_easy_setopt(handle, CURLOPT_POSTFIELDS, kept_->body.data());
    curl_easy_setopt(handle, CURLOPT_POSTFIELDSIZE, static_cast<long>(kept_->body.size()));
    curl_easy_setopt(handle, CURLOPT_HTTPHEADER, kept_->lines.get());
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, keep);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, &reply_);
}

KeptPost::~KeptPost() = default;

const std::string& KeptPost::post()
{
    reply_.clear();
    if (curl_easy_perform(kept_->handle.get()) != CURLE_OK) reply_.clear();
    return reply_;
}

std::size_t connectionsFor(std::size_t)
{
    return 1;
}

}  // namespace kzn::bench
