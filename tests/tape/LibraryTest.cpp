// What a host of the library has from a service without TLS, it has from the tape.
#include "tests/tape/Address.h"
#include "tests/tape/LibraryOnTape.h"

namespace service::test {

namespace {

TEST_F(LibraryOnTape, ATapeOfOneServiceHoldsForAnother)
{
    const std::vector<std::string> recorded = record({urlOf(first_->port()), {}});
    expectTapeTellsNobody();
    first_.reset();
    EXPECT_EQ(replay(), recorded);
    expectHolds({urlOf(other_.port()), {}});
}

}  // namespace

}  // namespace service::test
