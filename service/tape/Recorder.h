#pragma once

#include "service/http/Message.h"
#include "service/tape/Origin.h"
#include "service/tape/Scribe.h"
#include "service/tape/TapeFile.h"
#include "service/tape/Upstream.h"

namespace service::tape {

// Stands between a host and a service: passes on what they say, and has the tape written before the host hears it.
class Recorder {
public:
    Recorder(Upstream& upstream, TapeFile file);

    // `own` is where the recorder is reached; the service's addresses in replies become that, and back in requests.
    http::Response pass(const http::Request& request, const Origin& own);

    std::size_t recorded() const { return scribe_.size(); }

private:
    Upstream& upstream_;
    Scribe scribe_;
    TapeFile file_;
};

}  // namespace service::tape
