#include "service/Options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>

#include "service/http/Listen.h"
#include "service/tape/TapeCommands.h"

namespace service {

namespace {

constexpr long long kLongestSession = 365LL * 24 * 60 * 60 * 1000;
constexpr std::uint64_t kLargestUpload = 512ULL * 1024 * 1024;

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
    app.add_flag("--verbose", options.verbose, "A line for each request, on standard error");
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
    std::string listen = http::kDefaultListen;
    const CLI::Option* const data =
        app.add_option("--data", options.dataFile,
                       "The data file; made where there is none. :memory: keeps all in memory")
            ->check(checkDataFile);
    app.add_option("--listen", listen, "Where to listen; port 0 takes a free one")
        ->capture_default_str()
        ->check([&options](const std::string& text) { return http::parseListen(text, options.listen); });
    app.add_option("--seed", options.seed, "What an empty data file is filled with: demo, or a file");
    app.add_option("--session-duration", options.settings.sessionDuration, "How long an unused session lives, in ms")
        ->capture_default_str()
        ->check(CLI::Range(1LL, kLongestSession));
    app.add_option("--max-upload", options.settings.maxUpload, "The largest picture taken, in bytes")
        ->capture_default_str()
        ->check(CLI::Range(std::uint64_t{1}, kLargestUpload));
    addProcessOptions(app, options);
    http::parseListen(listen, options.listen);
    const CLI::App* const control = remote::addCommand(app, options.command);
    tape::addCommands(app, options.tapeCommand);
    try {
        app.parse(argc, argv);
        options.controls = control->parsed();
        if (!options.controls && !options.tapeCommand && data->empty()) throw CLI::RequiredError("--data");
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
