// A service behind TLS is out of reach, which is said before anything else happens.
#include "tests/service/DemoService.h"
#include "tests/support/FileBytes.h"

namespace service::test {

namespace {

TEST(TapeTls, AServiceBehindTlsIsRefusedInOneLine)
{
    const TemporaryFolder folder;
    const std::string tape = folder.file("tape");
    std::ofstream(std::filesystem::u8path(tape)) << "[body]\na\n[reply]\n";
    const std::string before = bytesOf(tape);
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"record", "--overwrite", "--listen", "127.0.0.1:0", "--to", tape},
          std::vector<std::string>{"verify", tape}}) {
        std::vector<std::string> all = words;
        all.insert(all.end(), {"--upstream", "https://127.0.0.1:1"});
        ServiceProcess process(all);
        EXPECT_EQ(process.output(), "");
        EXPECT_THAT(process.errors(), IsLike("pvwapi-service: [^\n]*http://[^\n]*\n"));
        EXPECT_EQ(process.wait(), 2);
    }
    EXPECT_EQ(bytesOf(tape), before);
}

}  // namespace

}  // namespace service::test
