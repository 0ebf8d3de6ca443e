// A service behind TLS is recorded, and played to a host without. Certificates are verified.
#include <csignal>

#include "tests/service/DemoService.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TestAuthority.h"
#include "tests/tape/posix/TlsRelay.h"

namespace service::test {

namespace {

using testing::HasSubstr;
using testing::Not;

class TapeTls : public DemoService {
protected:
    TapeTls() { certify("IP:127.0.0.1"); }

    void certify(const std::string& name)
    {
        relay_.reset();
        makeCertificate(name, certificate(), folder_.file("key"));
        relay_.emplace(port_, certificate(), folder_.file("key"));
    }

    std::string certificate() const { return folder_.file("certificate"); }
    std::string tape() const { return folder_.file("tape"); }

    std::vector<std::string> recording(const std::vector<std::string>& more = {}) const
    {
        std::vector<std::string> words{"record",     "--to",        tape(),     "--overwrite",
                                       "--upstream", relay_->url(), "--listen", "127.0.0.1:0"};
        words.insert(words.end(), more.begin(), more.end());
        return words;
    }

    // The recorder says why nothing could be had.
    void expectNotBelieved(const std::vector<std::string>& more)
    {
        ServiceProcess recorder(recording(more));
        const std::string reply = form(recorder.port(), "cmd=login&username=anna&password=anna-demo-1");
        EXPECT_FAILURE(reply, "KZN:InternalError");
        EXPECT_THAT(textAt(reply, kReason), HasSubstr("certificate verify failed"));
        EXPECT_THAT(bytesOf(tape()), Not(HasSubstr("[request]")));
    }

    // The reply to a listing.
    static std::string list(unsigned short port)
    {
        return User(port, "anna").script("<step><cmd>list</cmd><type>workspace</type></step>");
    }

    void expectRecorded(const std::vector<std::string>& more)
    {
        std::string recorded;
        {
            ServiceProcess recorder(recording(more));
            recorded = list(recorder.port());
            EXPECT_SUCCESS(recorded);
            EXPECT_THAT(recorded, HasSubstr("Autumn catalogue"));
        }
        EXPECT_THAT(bytesOf(tape()), Not(HasSubstr("anna-demo-1")));
        ServiceProcess player({"replay", tape(), "--listen", "127.0.0.1:0"});
        EXPECT_EQ(list(player.port()), recorded);
    }

    std::optional<TlsRelay> relay_;
};

TEST_F(TapeTls, AServiceWhoseCertificateIsNamedIsRecorded)
{
    expectRecorded({"--ca", certificate()});
}

TEST_F(TapeTls, TheSystemsAuthoritiesAreBelieved)
{
    const kzn::test::TestAuthority authority(certificate());
    ASSERT_TRUE(authority.isTrusted());
    expectRecorded({});
}

TEST_F(TapeTls, ACertificateOfNobodyIsNotBelieved)
{
    expectNotBelieved({});
}

TEST_F(TapeTls, ACertificateOfAnotherHostIsNotBelieved)
{
    certify("DNS:elsewhere.example");
    expectNotBelieved({"--ca", certificate()});
}

TEST_F(TapeTls, ATapeIsVerifiedThroughTls)
{
    expectRecorded({"--ca", certificate()});
    std::ofstream(folder_.file("secrets")) << "anna-demo-1\n";
    ServiceProcess verifier(
        {"verify", tape(), "--secrets", folder_.file("secrets"), "--ca", certificate(), "--upstream", relay_->url()});
    EXPECT_EQ(verifier.output(), "2 exchanges, 0 different\n");
    EXPECT_EQ(verifier.wait(), 0);
}

}  // namespace

}  // namespace service::test
