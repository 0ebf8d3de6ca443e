#include "service/Options.h"

#include <CLI/CLI.hpp>
#include <iostream>

#include "service/base/Text.h"

namespace service {

namespace {

constexpr const char* kDefaultListen = "127.0.0.1:8420";
constexpr long long kLongestSession = 365LL * 24 * 60 * 60 * 1000;
constexpr std::uint64_t kLargestUpload = 512ULL * 1024 * 1024;

// The address of "HOST:PORT"; only one of this machine's own is taken, for the passwords travel in clear.
std::string parseListen(const std::string& text, boost::asio::ip::tcp::endpoint& endpoint)
{
    const std::size_t colon = text.rfind(':');
    if (colon == std::string::npos) return "must be HOST:PORT";
    std::string host = text.substr(0, colon);
    if (host == "localhost") host = "127.0.0.1";
    if (host.starts_with('[') && host.ends_with(']')) host = host.substr(1, host.size() - 2);
    boost::system::error_code error;
    const boost::asio::ip::address address = boost::asio::ip::make_address(host, error);
    if (error) return "the host must be a numeric address or localhost";
    if (!address.is_loopback()) return "only a loopback address is served";
    const std::optional<long long> port = wholeNumber(std::string_view(text).substr(colon + 1), 0, 65535);
    if (!port) return "the port must be a number from 0 to 65535";
    endpoint = boost::asio::ip::tcp::endpoint(address, static_cast<unsigned short>(*port));
    return {};
}

// What the database takes for a file of its own, it forgets at the end.
std::string checkDataFile(const std::string& text)
{
    return text.empty() || text == ":memory:" ? "must name a file, for the data to be kept" : std::string();
}

}  // namespace

OptionsResult readOptions(int argc, const char* const* argv, Options& options)
{
    CLI::App app{"The stand-in for the hosted team-workspace service.", "pvwapi-service"};
    std::string listen = kDefaultListen;
    app.add_option("--data", options.dataFile, "The data file; made where there is none")
        ->required()
        ->check(checkDataFile);
    app.add_option("--listen", listen, "Where to listen; port 0 takes a free one")
        ->capture_default_str()
        ->check([&options](const std::string& text) { return parseListen(text, options.listen); });
    app.add_option("--seed", options.seed, "What an empty data file is filled with")->check(CLI::IsMember({"demo"}));
    app.add_option("--session-duration", options.settings.sessionDuration, "How long an unused session lives, in ms")
        ->capture_default_str()
        ->check(CLI::Range(1LL, kLongestSession));
    app.add_option("--max-upload", options.settings.maxUpload, "The largest picture taken, in bytes")
        ->capture_default_str()
        ->check(CLI::Range(std::uint64_t{1}, kLargestUpload));
    parseListen(listen, options.listen);
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        std::cout << app.help();
        return {false, 0};
    } catch (const CLI::ParseError& error) {
        std::cerr << "pvwapi-service: " << error.what() << std::endl;
        return {false, 2};
    }
    return {true, 0};
}

}  // namespace service
