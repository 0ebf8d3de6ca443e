#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace service::test {

// UTF-8 percent-encoding as a host does it.
std::string encoded(std::string_view text);

// The element text at a path such as "/kznapi/response/reason"; the first where there are several.
std::string textAt(const std::string& reply, const std::string& path);
std::vector<std::string> textsAt(const std::string& reply, const std::string& path);

inline constexpr const char* kResult = "/kznapi/response/result";
inline constexpr const char* kReason = "/kznapi/response/reason";
inline constexpr const char* kException = "/kznapi/response/exceptionID";
inline constexpr const char* kCred = "/kznapi/securityContext/cred";

struct HttpReply {
    unsigned status = 0;
    std::string contentType;
    std::string body;
    bool keepAlive = false;
};

struct Socket;

// One connection to the service on loopback.
class Talk {
public:
    explicit Talk(unsigned short port);
    ~Talk();
    Talk(const Talk&) = delete;
    Talk& operator=(const Talk&) = delete;

    HttpReply post(const std::string& target, const std::string& body,
                   const std::string& contentType = "application/x-www-form-urlencoded");
    HttpReply get(const std::string& target);

    // Any method; `headers` are whole lines. Without a Host of theirs the service's own goes out.
    HttpReply send(const std::string& method, const std::string& target, const std::string& body,
                   const std::string& headers);

    // What a Host header has to say.
    std::string host() const;

    // Any bytes; a peer that has gone is no error.
    void sendRaw(std::string_view bytes);

    // Everything until the service closes.
    std::string readToEnd();

    // Some more of it; empty where the service closes.
    std::string readMore();

    // Whoever waits for a reply waits no longer; by any thread.
    void hangUp();

private:
    HttpReply readReply();

    std::unique_ptr<Socket> connection_;
};

// The text of the reply to a form on a connection of its own.
std::string form(unsigned short port, const std::string& body);

}  // namespace service::test
