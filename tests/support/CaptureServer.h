// An HTTP server inside the test program: it keeps every request and serves the replies that the test has queued.
//
//   CaptureServer server;
//   server.reply(200, "text/xml; charset=utf-8", "<kznapi/>");
//   ... server.url("/kznconnect/op.do") ...
//   EXPECT_EQ(server.requests().back().body, "cmd=get");
#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "pvutil/StringEx.h"

namespace kzn::test {

using Headers = std::vector<std::pair<std::string, std::string>>;

/// A request as it came.
struct CapturedRequest {
    std::string method;
    std::string target;
    Headers headers;
    std::string body;
    std::size_t connection = 0;  // 1 for the first connection, 2 for the second

    /// The value of the first header of that name, in whatever case; empty where there is none.
    std::string header(std::string_view name) const;
    bool has(std::string_view name) const;
};

/// What goes out for one request, byte by byte. Unless it closes or stalls, the connection serves on afterwards.
class Script {
public:
    struct Step {
        std::chrono::milliseconds pause{0};
        std::string bytes;
    };
    enum class End { serveOn, close, reset, stall };

    Script& send(std::string bytes);
    Script& pause(std::chrono::milliseconds time);
    /// The connection is closed: after `send` a reply cut off, alone no reply at all.
    Script& close();
    /// The connection is reset, as by a server that leaves with bytes unread.
    Script& reset();
    /// Nothing more is sent, and nothing is closed.
    Script& stall();

    const std::vector<Step>& steps() const { return steps_; }
    End end() const { return end_; }

private:
    std::vector<Step> steps_;
    End end_ = End::serveOn;
};

/// Serves on a port of its own of the loopback address, on a thread of its own, until it is destroyed.
class CaptureServer {
public:
    CaptureServer();
    CaptureServer(const CaptureServer&) = delete;
    CaptureServer& operator=(const CaptureServer&) = delete;
    ~CaptureServer();

    unsigned short port() const;
    std::string address(std::string_view path = "") const;
    CStringT url(std::string_view path = "") const;

    /// Queues a reply; each request takes the one that has waited longest.
    void reply(int status, std::string_view contentType, std::string_view body, const Headers& more = {});
    void script(Script script);
    /// What a request gets when nothing waits; at first 404 with a line of text.
    void otherwise(int status, std::string_view contentType, std::string_view body, const Headers& more = {});
    void otherwise(Script script);

    /// Forgets what is queued and was not asked for; how many replies that were.
    std::size_t dropQueue();

    std::vector<CapturedRequest> requests() const;
    /// How many of them there are.
    std::size_t received() const;
    /// The same, and the server forgets them.
    std::vector<CapturedRequest> takeRequests();

    /// Keeps none of the requests and targets so far; they still count.
    void forget();
    std::size_t connections() const;
    /// The targets of all requests whose head has come, whether their body did or not.
    std::vector<std::string> targets() const;
    /// How many scripts have come to their end, or to that of their connection.
    std::size_t answered() const;

    /// Closes what is connected now, as a server does that has waited long enough for another request.
    void closeConnections();
    /// The same, with a reset.
    void resetConnections();
    /// The next request with a larger body is not read to its end: the connection ends in the middle of it, by `end`.
    /// Stands for a connection from the request after the present one on.
    void endInsideBodyOver(std::size_t bytes, Script::End end);
    /// From now on nothing more is read from any connection.
    void stopReading();

    /// A port of the loopback address that nobody listens on.
    static unsigned short closedPort();

private:
    class Engine;
    std::unique_ptr<Engine> engine_;
};

/// The bytes of a whole reply, for scripts that send it in pieces or break it off.
std::string replyText(int status, std::string_view contentType, std::string_view body, const Headers& more = {});

}  // namespace kzn::test
