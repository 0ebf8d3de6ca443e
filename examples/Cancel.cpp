// Ends calls that take too long: the first by its deadline, the second from another thread, as a button does.
//
//   kill -STOP <the service>; Cancel; kill -CONT <the service>
//
// With a service that answers, both calls simply succeed.
#include <chrono>
#include <cstdio>
#include <future>
#include <mutex>

#include "client/WapiClient.h"
#include "examples/Environment.h"

using kzn::pvutil::stringex::ToUtf8;

namespace {

constexpr unsigned kDeadline = 2000;  // milliseconds for the whole of a call
constexpr std::chrono::milliseconds kPatience{2000};

const char* outcomeOf(CWapiClient& client, int result)
{
    if (result == 1) return "signed in";
    switch (client.getNetworkErrorKind()) {
    case CWapiClient::NETWORK_NONE: return "the service said no";
    case CWapiClient::NETWORK_DEADLINE: return "the deadline passed";
    case CWapiClient::NETWORK_CANCELLED: return "cancelled";
    default: return "no connection";
    }
}

/// What went wrong, in the words of service or system, is for whoever looks into it.
void show(const char* what, CWapiClient& client, int result)
{
    std::printf("%s: %s\n", what, outcomeOf(client, result));
    if (result == 1) return;
    std::fprintf(stderr, "%s\n%s\n", ToUtf8(client.GetLstMsg().reason).c_str(),
                 ToUtf8(client.getNetworkErrorText()).c_str());
}

/// What the user's thread and the worker share. The client dies on the worker; the lock keeps it alive for cancel().
class StopButton {
public:
    void watch(CWapiClient* client)
    {
        const std::lock_guard guard(lock_);
        client_ = client;
    }

    /// A call that has not begun yet is not met: a host with several calls asks between them, too.
    void press()
    {
        const std::lock_guard guard(lock_);
        if (client_ != nullptr) client_->cancel();
    }

private:
    std::mutex lock_;
    CWapiClient* client_ = nullptr;
};

int signInAndOut(const char* what, CWapiClient& client)
{
    const int result = signIn(client);
    show(what, client, result);
    if (result == 1) client.logout(client.getRootCred());
    return result;
}

/// A client belongs to the thread that makes it, which is the worker.
int workUntilStopped(StopButton& button)
{
    CWapiClient client(fromEnvironment("PVWAPI_BASE_URL"));
    button.watch(&client);
    const int result = signInAndOut("with a button", client);
    button.watch(nullptr);
    return result;
}

int withDeadline()
{
    CWapiClient client(fromEnvironment("PVWAPI_BASE_URL"));
    client.setDeadline(kDeadline);
    return signInAndOut("with a deadline", client);
}

int withButton()
{
    StopButton button;
    std::future<int> work = std::async(std::launch::async, [&button] { return workUntilStopped(button); });
    // Here a user interface goes on with its messages, and its button is pressed at some time.
    if (work.wait_for(kPatience) == std::future_status::timeout) button.press();
    return work.get();
}

}  // namespace

int main()
{
    const int first = withDeadline();
    const int second = withButton();
    return first == 1 && second == 1 ? 0 : 1;
}
