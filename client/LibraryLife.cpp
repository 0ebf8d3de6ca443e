// The one place where something happens as the library is loaded and unloaded: the log is opened and closed.
#include "client/TraceLog.h"
#include "pvutil/HttpClient.h"
#include "pvutil/Process.h"
#include "pvutil/TimerWindow.h"
#include "pvutil/XmlParser.h"

namespace {

[[gnu::constructor]] void onLoad() noexcept
{
    wapi::traceLog().openInDataFolder();
}

[[gnu::destructor]] void onUnload() noexcept
{
    // A process that ends gives everything back by itself, and its other threads may have died in the middle of a call.
    if (!kzn::pvutil::processIsEnding()) {
        kzn::pvutil::TimerWindow::shutDown();
        kzn::pvutil::CZelHttpClient::DropKept();
        EXPAT_EX::dropParsers();
    }
    wapi::traceLog().close();
}

}  // namespace
