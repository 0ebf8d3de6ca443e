#include "bench/HandMadeCall.h"

#include <expat.h>
#include <fcntl.h>
#include <sys/uio.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "bench/posix/CurlHandles.h"

namespace kzn::bench {

namespace {

struct FreeParser {
    void operator()(XML_Parser parser) const noexcept { XML_ParserFree(parser); }
};

// The credential is ASCII; whoever knows that converts and encodes it in one pass.
void appendEncoded(std::string& body, const CStringT& text)
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    for (const auto unit : text) {
        const auto c = static_cast<char>(unit);
        const bool isPlain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
                             c == '_' || c == '.' || c == '~';
        if (isPlain) {
            body += c;
        } else {
            body += '%';
            body += kDigits[static_cast<unsigned char>(c) >> 4];
            body += kDigits[static_cast<unsigned char>(c) & 0xF];
        }
    }
}

}  // namespace

struct HandMadeCall::Parts {
    CurlHandle handle{curl_easy_init()};
    CurlLines lines{curl_slist_append(nullptr, "User-Agent: pvWapi/1.0")};
    std::unique_ptr<XML_ParserStruct, FreeParser> parser{XML_ParserCreate("UTF-8")};
    int log = -1;
    std::string body;
    std::string reply;
    std::string text;
    std::string duration;
    bool isSuccess = false;

    static std::size_t onBytes(const char* bytes, std::size_t one, std::size_t count, void* parts)
    {
        static_cast<Parts*>(parts)->reply.append(bytes, one * count);
        return one * count;
    }

    static void onStart(void* parts, const XML_Char*, const XML_Char**) { static_cast<Parts*>(parts)->text.clear(); }

    static void onText(void* parts, const XML_Char* text, int length)
    {
        static_cast<Parts*>(parts)->text.append(text, static_cast<std::size_t>(length));
    }

    static void onEnd(void* parts, const XML_Char* name)
    {
        auto& self = *static_cast<Parts*>(parts);
        if (std::strcmp(name, "result") == 0) self.isSuccess = self.text == "SUCCESS";
        else if (std::strcmp(name, "sessionDuration") == 0) self.duration = self.text;
    }

    void writeLog(std::string_view line) const
    {
        std::array<char, 128> head;
        const std::time_t now = std::time(nullptr);
        std::tm local{};
        localtime_r(&now, &local);
        std::size_t length = std::strftime(head.data(), head.size(), "\r\n<%Y-%m-%d %H:%M:%S", &local);
        length += static_cast<std::size_t>(std::snprintf(head.data() + length, head.size() - length,
                                                         ", pid=%d, tid=%d> Debug:  ", getpid(), gettid()));
        const std::array<iovec, 3> pieces{
            {{head.data(), length}, {const_cast<char*>(line.data()), line.size()}, {const_cast<char*>("\n"), 1}}};
        static_cast<void>(::writev(log, pieces.data(), static_cast<int>(pieces.size())));
    }

    bool exchange()
    {
        reply.clear();
        curl_easy_setopt(handle.get(), CURLOPT_POSTFIELDS, body.data());
        curl_easy_setopt(handle.get(), CURLOPT_POSTFIELDSIZE, static_cast<long>(body.size()));
        return curl_easy_perform(handle.get()) == CURLE_OK;
    }

    bool parse()
    {
        isSuccess = false;
        XML_ParserReset(parser.get(), "UTF-8");
        XML_SetUserData(parser.get(), this);
        XML_SetElementHandler(parser.get(), onStart, onEnd);
        XML_SetCharacterDataHandler(parser.get(), onText);
        const auto size = static_cast<int>(reply.size());
        return XML_Parse(parser.get(), reply.data(), size, XML_TRUE) == XML_STATUS_OK && isSuccess;
    }
};

HandMadeCall::HandMadeCall(const std::string& url, const std::string& log) : parts_(std::make_unique<Parts>())
{
    parts_->log = ::open(log.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0600);
    CURL* const handle = parts_->handle.get();
    curl_easy_setopt(handle, CURLOPT_URL, url.c_str());
    curl_easy_setopt(handle, CURLOPT_HTTPHEADER, parts_->lines.get());
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, Parts::onBytes);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, parts_.get());
}

HandMadeCall::~HandMadeCall()
{
    ::close(parts_->log);
}

bool HandMadeCall::getSessionInfo(const CStringT& cred, CStringT& duration)
{
    parts_->body = "cmd=get&cred=";
    appendEncoded(parts_->body, cred);
    parts_->body += "&type=sessionInfo&id=sessioninfo&select=sessionInfo";
    parts_->writeLog(parts_->body);
    if (!parts_->exchange()) return false;
    parts_->writeLog(parts_->reply);
    if (!parts_->parse()) return false;
    duration.assign(parts_->duration.begin(), parts_->duration.end());
    return true;
}

}  // namespace kzn::bench
