// Signing in and out, and the session itself.
#include "host/Call.h"
#include "host/Errors.h"
#include "host/Text.h"
#include "host/Topics.h"

namespace host {

namespace {

void login(Call& call)
{
    call.signIn();
    const CStringT cred = call.client().getRootCred();
    if (!call.given("--save")) return call.showText("cred", cred);

    const CStringT file = call.asTyped("--save");
    try {
        saveSession(ToUtf8(file), cred);
    } catch (...) {
        // A session that nobody knows of would stay open at the service.
        call.client().logout(cred);
        throw;
    }
    call.show({{"saved", file}});
}

void logout(Call& call)
{
    const CStringT& cred = call.credentials().cred;
    if (cred.empty()) throw LocalProblem("no session to end: set PVWAPI_CRED, or name its file with --credentials");
    call.check(call.client().logout(cred));
    // The client says nothing of a sign-out, whatever came of it.
    if (!call.wire().replied()) {
        const bool isStopped = call.wire().isStopped();
        throw Failure(isStopped ? Status::stopped : Status::unconnected,
                      "the service did not answer; the session may still be open");
    }
}

void session(Call& call)
{
    call.check(call.client().getSessionInfo(call.cred()));
    call.show({{"operationURL", call.client().getOpURL()}, {"refreshInterval", call.client().getRefreshInterval()}});
}

void clone(Call& call)
{
    CStringT cred;
    call.check(call.client().cloneSession(call.cred(), call.text("--workspace"), cred));
    call.showText("cred", cred);
}

void renew(Call& call)
{
    const Credentials& c = call.identity();
    CStringT cred;
    call.check(call.client().getCredForExpired(cred, c.user, c.token, c.isp, c.password, c.token.empty() ? 0 : 1));
    call.showText("cred", cred);
}

}  // namespace

Commands sessionCommands()
{
    return {
        {"login",
         "Begin a session and print its credential, for PVWAPI_CRED",
         {{"--save", "Write it to this file instead, for --credentials", Kind::file}},
         login,
         {"login"}},
        {"logout", "End the session of PVWAPI_CRED or of the file", {}, logout, {"logout"}},
        {"session", "Read the session; refreshInterval is in milliseconds", {}, session, {"getSessionInfo"}},
        {"session clone",
         "Derive a further credential from the session",
         {{"--workspace", "The ID of the only workspace that it is to open"}},
         clone,
         {"cloneSession"}},
        {"session renew", "Sign in again for a session that has expired", {}, renew, {"getCredForExpired"}},
    };
}

}  // namespace host
