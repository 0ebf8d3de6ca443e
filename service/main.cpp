#include <boost/asio/io_context.hpp>
#include <boost/asio/signal_set.hpp>
#include <csignal>
#include <iostream>
#include <stdexcept>

#include "service/Options.h"
#include "service/base/System.h"
#include "service/http/Ready.h"
#include "service/http/Server.h"
#include "service/seed/Seed.h"
#include "service/store/Database.h"
#include "service/store/NewFile.h"

namespace {

constexpr int kCannotStart = 2;

void openAndServe(service::Options& options)
{
    if (options.endWithParent) service::endWithParent();
    service::store::NewFile file(options.dataFile);
    service::store::Database database(options.dataFile);
    file.opened();
    if (!options.seed.empty()) std::clog << service::seed::fill(database, options.seed) << std::endl;

    boost::asio::io_context io(1);
    const service::http::Router router(database, options.settings);
    const service::http::ConnectionLimits limits;
    const service::http::Server server(io, options.listen, router, limits);
    options.settings.baseURL = "http://" + server.address();
    boost::asio::signal_set stop(io, SIGINT, SIGTERM);
    stop.async_wait([&io](const boost::system::error_code&, int) { io.stop(); });

    file.keep();
    if (options.readyJson) {
        std::cout << service::http::readyText(options.settings) << std::endl;
    } else {
        std::cout << "listening on " << server.address() << std::endl;
    }
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
        openAndServe(options);
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "pvwapi-service: " << error.what() << std::endl;
        return kCannotStart;
    }
}
