#include "service/Options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
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

// It has to stand in a header as it is, and not be guessed.
std::string checkToken(const std::string& token)
{
    constexpr std::size_t kShortest = 8;
    constexpr std::size_t kLongest = 200;
    const bool plain = std::ranges::all_of(token, [](char c) { return c > ' ' && c <= '~'; });
    if (plain && token.size() >= kShortest && token.size() <= kLongest) return {};
    return "must be 8 to 200 characters, without blanks";
}

// What concerns the process and not the service that it gives.
void addProcessOptions(CLI::App& app, Options& options)
{
    app.add_option("--control-token", options.controlToken, "What opens /control/; made where none is given")
        ->envname("PVWAPI_CONTROL_TOKEN")
        ->check(checkToken);
    app.add_flag("--ready-json", options.readyJson, "Say in one line of JSON where it listens");
    app.add_flag("--verbose", options.settings.verbose, "A line for each request, on standard error");
    app.add_flag("--end-with-parent", options.endWithParent, "End when the process that started it ends");
    app.set_version_flag("--version", "pvwapi-service " PVWAPI_VERSION);
}

// The database would take no name for a file of its own, and forget it at the end.
std::string checkDataFile(const std::string& text)
{
    return text.empty() ? "must name a file, or be :memory:" : std::string();
}

}  // namespace

OptionsResult readOptions(int argc, const char* const* argv, Options& options)
{
    CLI::App app{"The stand-in for the hosted team-workspace service.", "pvwapi-service"};
    std::string listen = kDefaultListen;
    const CLI::Option* const data =
        app.add_option("--data", options.dataFile,
                       "The data file; made where there is none. :memory: keeps all in memory")
            ->check(checkDataFile);
    app.add_option("--listen", listen, "Where to listen; port 0 takes a free one")
        ->capture_default_str()
        ->check([&options](const std::string& text) { return parseListen(text, options.listen); });
    app.add_option("--seed", options.seed, "What an empty data file is filled with: demo, or a file");
    app.add_option("--session-duration", options.settings.sessionDuration, "How long an unused session lives, in ms")
        ->capture_default_str()
        ->check(CLI::Range(1LL, kLongestSession));
    app.add_option("--max-upload", options.settings.maxUpload, "The largest picture taken, in bytes")
        ->capture_default_str()
        ->check(CLI::Range(std::uint64_t{1}, kLargestUpload));
    addProcessOptions(app, options);
    parseListen(listen, options.listen);
    const CLI::App* const control = remote::addCommand(app, options.command);
    try {
        app.parse(argc, argv);
        options.controls = control->parsed();
        if (!options.controls && data->empty()) throw CLI::RequiredError("--data");
    } catch (const CLI::CallForHelp&) {
        std::cout << app.help();
        return {false, 0};
    } catch (const CLI::CallForVersion& version) {
        std::cout << version.what() << std::endl;
        return {false, 0};
    } catch (const CLI::ParseError& error) {
        std::cerr << "pvwapi-service: " << error.what() << std::endl;
        return {false, 2};
    }
    return {true, 0};
}

}  // namespace service
