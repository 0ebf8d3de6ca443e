// The one place where something happens as the library is loaded and unloaded: the log is opened and closed.
#include "client/TraceLog.h"
#include "pvutil/HttpTransport.h"
#include "pvutil/TimerWindow.h"

namespace {

[[gnu::constructor]] void onLoad() noexcept
{
    wapi::traceLog().openInDataFolder();
}

[[gnu::destructor]] void onUnload() noexcept
{
    kzn::pvutil::TimerWindow::shutDown();
    kzn::pvutil::shutDownTransport();
    wapi::traceLog().close();
}

}  // namespace
