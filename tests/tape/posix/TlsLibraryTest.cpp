// A service behind TLS is recorded; a host of the library has the same from its tape, without TLS.
#include "tests/tape/LibraryOnTape.h"
#include "tests/tape/posix/TlsRelay.h"

namespace service::test {

namespace {

class LibraryOnTlsTape : public LibraryOnTape {
protected:
    LibraryOnTlsTape() { makeCertificate("IP:127.0.0.1", certificate(), key()); }

    std::string certificate() const { return folder_.file("certificate"); }
    std::string key() const { return folder_.file("key"); }
    Upstream upstream(const TlsRelay& relay) const { return {relay.url(), {"--ca", certificate()}}; }
};

TEST_F(LibraryOnTlsTape, ATapeOfOneServiceHoldsForAnother)
{
    std::vector<std::string> recorded;
    {
        const TlsRelay front(first_->port(), certificate(), key());
        recorded = record(upstream(front));
    }
    expectTapeTellsNobody();
    first_.reset();
    EXPECT_EQ(replay(), recorded);
    const TlsRelay front(other_.port(), certificate(), key());
    expectHolds(upstream(front));
}

}  // namespace

}  // namespace service::test
