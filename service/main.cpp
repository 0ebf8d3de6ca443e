#include <boost/asio/io_context.hpp>
#include <functional>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "service/Options.h"
#include "service/base/Process.h"
#include "service/base/Secret.h"
#include "service/control/Control.h"
#include "service/faults/Faults.h"
#include "service/http/Ready.h"
#include "service/http/Router.h"
#include "service/http/Server.h"
#include "service/journal/Journal.h"
#include "service/seed/Seed.h"
#include "service/store/Database.h"
#include "service/store/NewFile.h"
#include "service/work/Crew.h"

namespace {

constexpr int kCannotStart = 2;

void announce(const service::Options& options, const std::string& address, const std::string& token)
{
    if (options.readyJson) {
        std::cout << service::http::readyText(options.settings, token) << std::endl;
        return;
    }
    if (options.controlToken.empty()) std::clog << "control token " << token << std::endl;
    std::clog << "inspector http://" << address << '/' << (options.controlToken.empty() ? "#token=" + token : "")
              << std::endl;
    std::cout << "listening on " << address << std::endl;
}

class AtEnd {
public:
    explicit AtEnd(std::function<void()> work) : work_(std::move(work)) {}
    ~AtEnd() { work_(); }
    AtEnd(const AtEnd&) = delete;
    AtEnd& operator=(const AtEnd&) = delete;

private:
    std::function<void()> work_;
};

void openAndServe(service::Options& options)
{
    const service::Json seed = options.seed.empty() ? service::Json() : service::seed::load(options.seed);
    service::store::NewFile file(options.dataFile);
    service::store::Database database(options.dataFile);
    file.opened();
    boost::asio::io_context io(1);
    service::faults::Faults faults(database);
    std::optional<service::work::Crew> crew;  // once nobody else uses the connection
    service::journal::Journal journal(database, [&crew](std::function<void()> write) {
        crew->write([write = std::move(write)](service::store::Database&) { write(); });
    });
    service::control::Control control(database, options.settings, faults, seed,
                                      options.controlToken.empty() ? service::newCredential() : options.controlToken,
                                      &journal);
    if (const std::string done = control.begin(database); !done.empty()) std::clog << done << std::endl;

    crew.emplace(database);
    const service::http::Router router(database, options.settings, &control, &faults, &*crew, &journal);
    service::http::RequestLog log(std::clog);
    const service::http::ConnectionLimits limits;
    const service::http::Server server(io, options.listen, router, limits, options.verbose ? &log : nullptr);
    options.settings.baseURL = "http://" + server.address();
    options.settings.port = server.port();
    const service::StopOnRequest stop(io);
    const AtEnd atEnd([&crew] { crew->end(); });  // before what it works with goes
    if (options.endWithParent) service::endWithParent();

    file.keep();
    announce(options, server.address(), control.token());
    io.run();
}

}  // namespace

int main(int argc, char** argv)
{
    service::prepareStreams();
    service::prepareMemory();
    try {
        const std::vector<std::string> words = service::arguments(argc, argv);
        std::vector<const char*> pointers;
        pointers.reserve(words.size());
        for (const std::string& word : words) pointers.push_back(word.c_str());
        service::Options options;
        const service::OptionsResult result =
            service::readOptions(static_cast<int>(words.size()), pointers.data(), options);
        if (!result.goOn) return result.exitStatus;
        if (options.controls) return service::remote::run(options.command);
        if (options.tapeCommand) return options.tapeCommand();
        openAndServe(options);
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "pvwapi-service: " << error.what() << std::endl;
        return kCannotStart;
    }
}
