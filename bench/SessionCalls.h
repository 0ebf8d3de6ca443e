// The small call that is timed: a client, its service's end, and what a peer sends and gets instead.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "bench/LoopbackServer.h"
#include "bench/Report.h"
#include "client/WapiClient.h"

namespace kzn::bench {

inline constexpr std::string_view kSessionBody =
    "cmd=get&type=sessionInfo&id=sessioninfo&cred=5f0c2f7a-6d3b-4c6e-9a55-1d2f3e4b5c6d%3Aus-00f1e2d3c4b5a697";
inline constexpr std::string_view kSessionReply =
    "<kznapi><response><result>SUCCESS</result></response><return><sessionInfo><userID>us-00f1e2d3c4b5a697</userID>"
    "<userName>anna.field@example.org</userName><sessionDuration>3600000</sessionDuration></sessionInfo></return></"
    "kznapi>";

class SessionCalls {
public:
    /// Puts the program on one processor, before the service's end is made, so that it stays there too.
    explicit SessionCalls(Report& report);

    const std::string& url() const noexcept { return server_.url(); }
    const CStringT& cred() const noexcept { return cred_; }

    void countConnections();

    /// The client's call, log and trace included, to what a peer does for the same answer.
    Ratio against(const std::function<bool()>& peer);

private:
    double secondsOfBatch(const std::function<bool()>& call);

    Report& report_;
    bool isPlaced_;
    LoopbackServer server_;
    CWapiClient client_;
    CStringT cred_;
};

}  // namespace kzn::bench
