#include "tests/pvutil/SlowLookUp.h"

#include <dlfcn.h>
#include <netdb.h>

#include <atomic>
#include <chrono>
#include <cstring>
#include <thread>

namespace kzn::test {

namespace {

std::atomic<int> g_lookUps = 0;

}  // namespace

const bool kHasSlowLookUp = true;

int slowLookUps() noexcept
{
    return g_lookUps;
}

}  // namespace kzn::test

// Stands before the system's own, for no name server here can be made to take long.
extern "C" __attribute__((visibility("default"))) int getaddrinfo(const char* host, const char* service,
                                                                  const addrinfo* hints, addrinfo** found)
{
    if (host != nullptr && std::strcmp(host, "slow.invalid") == 0) {
        ++kzn::test::g_lookUps;
        std::this_thread::sleep_for(std::chrono::seconds(1));
        return EAI_NONAME;
    }
    using LookUp = int (*)(const char*, const char*, const addrinfo*, addrinfo**);
    return reinterpret_cast<LookUp>(dlsym(RTLD_NEXT, "getaddrinfo"))(host, service, hints, found);
}
