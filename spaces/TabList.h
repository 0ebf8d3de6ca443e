// The tabs of a workspace in a reply.
#pragma once

#include <vector>

#include "client/CommonResponse.h"
#include "records/Tabs.h"

namespace wapi {

/// The tabs in the order of the reply, of a direct reply and of a script's step.
class TabListPart final : public CWapiReplyPart {
public:
    TabListPart(CXMLWapiCommonResponse& reply, PathPiece at);
    void onEnd(unsigned id) override;

    std::vector<CZelTab> tabs;

private:
    CStringT tabID_;
    CStringT tabName_;
    CStringT tabType_;
    CStringT tabOrder_;
};

}  // namespace wapi
