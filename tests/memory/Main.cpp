// Fails the allocations of the library's calls, one after the other:
//   memory_tests            a share of them, for every day
//   memory_tests --every    each of them, or many where each takes long
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

#include "client/WapiClient.h"
#include "tests/memory/FailingHeap.h"
#include "tests/memory/FirstCall.h"
#include "tests/memory/HostSystem.h"
#include "tests/memory/Share.h"
#include "tests/support/Text.h"

namespace {

bool theEvery = false;

// The runtime keeps memory for exceptions behind a lock that Windows makes at its first use. In a process that has no
// memory left for that lock, each exception ends in another one, without end: nothing above the runtime is a help then.
void makeExceptionsLock()
{
    const kzn::test::FailingHeap heap(1, kzn::test::Failing::once);
    try {
        throw 1;
    } catch (int) {
    }
}

// Some things are made once for the process, a few only where a call fails. No test takes them for a leak.
void makeWhatStays()
{
    using kzn::test::Failing;
    using kzn::test::FailingHeap;
    CWapiClient client(wide("http://127.0.0.1:1/kznconnect/op.do"));
    for (std::size_t nth = 1, asked = nth; nth <= asked; ++nth) {
        const FailingHeap heap(nth, Failing::once);
        client.OnTimer(1);
        asked = FailingHeap::asked();
    }
}

}  // namespace

std::size_t shareOf(std::size_t few)
{
    return theEvery ? kLongShare : std::max<std::size_t>(few / kSlowness, 2);
}

std::size_t stepOfShare()
{
    return theEvery ? 1 : kSlowness;
}

int main(int count, char** words)
{
    makeExceptionsLock();
    if (count > 1 && words[1] == kFirstCall) return firstCall({words + 2, words + count});
    theEvery = std::any_of(words + 1, words + count, [](std::string_view word) { return word == "--every"; });
    testing::InitGoogleMock(&count, words);
    setProgram(words[0]);
    makeWhatStays();
    return RUN_ALL_TESTS();
}
