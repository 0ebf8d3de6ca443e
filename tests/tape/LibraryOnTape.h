// A host of the library, whose service is recorded, then played from the tape, and then another one.
#pragma once

#include <optional>

#include "tests/service/DemoService.h"

namespace service::test {

class LibraryOnTape : public testing::Test {
protected:
    // A service's URL, and what the program has to be told besides.
    struct Upstream {
        std::string url;
        std::vector<std::string> more;
    };

    LibraryOnTape();

    // What a host sees of a day, through a recorder and from the tape alone; both say that all went well.
    std::vector<std::string> record(const Upstream& service) const;
    std::vector<std::string> replay() const;

    // A service like the recorded one answers the tape's host as that did; and once it has had that day, otherwise.
    void expectHolds(const Upstream& service) const;

    // No secret, and no address but the placeholder's.
    void expectTapeTellsNobody() const;

    TemporaryFolder folder_;
    std::optional<ServiceProcess> first_;
    ServiceProcess other_;

private:
    std::string tape() const { return folder_.file("tape"); }
    std::string icon() const { return folder_.file("icon.png"); }
    std::string secrets() const { return folder_.file("secrets"); }
    std::vector<std::string> day(unsigned short port) const;
    std::string verify(const Upstream& service, int& status) const;
};

}  // namespace service::test
