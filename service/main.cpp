#include <boost/asio/io_context.hpp>
#include <boost/asio/signal_set.hpp>
#include <csignal>
#include <iostream>
#include <stdexcept>

#include "service/Options.h"
#include "service/base/Secret.h"
#include "service/base/System.h"
#include "service/control/Control.h"
#include "service/faults/Faults.h"
#include "service/http/Ready.h"
#include "service/http/Server.h"
#include "service/seed/Seed.h"
#include "service/store/Database.h"
#include "service/store/NewFile.h"

namespace {

constexpr int kCannotStart = 2;

void announce(const service::Options& options, const std::string& address, const std::string& token)
{
    if (options.readyJson) {
        std::cout << service::http::readyText(options.settings, token) << std::endl;
        return;
    }
    if (options.controlToken.empty()) std::clog << "control token " << token << std::endl;
    std::cout << "listening on " << address << std::endl;
}

void openAndServe(service::Options& options)
{
    const service::Json seed = options.seed.empty() ? service::Json() : service::seed::load(options.seed);
    service::store::NewFile file(options.dataFile);
    service::store::Database database(options.dataFile);
    file.opened();
    service::faults::Faults faults(database);
    service::control::Control control(database, options.settings, faults, seed,
                                      options.controlToken.empty() ? service::newCredential() : options.controlToken);
    if (!seed.is_null()) std::clog << service::seed::fillEmpty(database, options.settings, seed) << std::endl;

    boost::asio::io_context io(1);
    const service::http::Router router(database, options.settings, &control, &faults);
    const service::http::ConnectionLimits limits;
    const service::http::Server server(io, options.listen, router, limits);
    options.settings.baseURL = "http://" + server.address();
    options.settings.port = server.port();
    boost::asio::signal_set stop(io, SIGINT, SIGTERM);
    stop.async_wait([&io](const boost::system::error_code&, int) { io.stop(); });
    if (options.endWithParent) service::endWithParent();

    file.keep();
    announce(options, server.address(), control.token());
    io.run();
}

}  // namespace

int main(int argc, char** argv)
{
    // Whoever read the log or waited for a reply may be gone; that ends a write, not the service.
    std::signal(SIGPIPE, SIG_IGN);
    try {
        service::Options options;
        const service::OptionsResult result = service::readOptions(argc, argv, options);
        if (!result.goOn) return result.exitStatus;
        if (options.controls) return service::remote::run(options.command);
        openAndServe(options);
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "pvwapi-service: " << error.what() << std::endl;
        return kCannotStart;
    }
}
