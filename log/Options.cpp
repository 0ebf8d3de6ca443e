#include "log/Options.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <string_view>

#include "log/Problem.h"
#include "log/Text.h"

namespace logreader {

namespace {

constexpr const char* kSummary = "Show the calls that a log of the library holds, a line a call.";
constexpr const char* kFooter =
    "\nWithout FILE it is the library's own log, Pravik/Log/pvwapi.txt in the user's folder for application\n"
    "data; - is standard input. Passwords, tokens and credentials are masked.\n"
    "Exit status: 0 done, 2 the command line, the file or this machine is at fault.";

/// Whether each part of a time that has the right shape is in its range, as far as its digits are there.
bool isInRange(std::string_view time)
{
    struct Part {
        std::size_t begin;
        std::string_view least;
        std::string_view most;
    };
    static constexpr std::array kParts = {Part{5, "01", "12"}, Part{8, "01", "31"}, Part{11, "00", "23"},
                                          Part{14, "00", "59"}, Part{17, "00", "60"}};
    return std::ranges::all_of(kParts, [&](const Part& part) {
        const std::string_view is = time.substr(std::min(part.begin, time.size()), part.least.size());
        return is >= part.least.substr(0, is.size()) && is <= part.most.substr(0, is.size());
    });
}

/// A time or its beginning, such as a day.
std::string timeProblem(const std::string& text)
{
    constexpr std::string_view kShape = "0000-00-00 00:00:00";
    const bool fits = !text.empty() && text.size() <= kShape.size() &&
                      std::equal(text.begin(), text.end(), kShape.begin(), [](char is, char shape) {
                          return shape == '0' ? is >= '0' && is <= '9' : is == shape;
                      });
    return fits && isInRange(text) ? std::string()
                                   : "'" + text + "' is no time such as 2026-01-31 or '2026-01-31 23:59'";
}

std::string numberProblem(const std::string& text)
{
    constexpr std::size_t kMostDigits = 18;
    const bool isNumber = !text.empty() && text.size() <= kMostDigits && text.front() != '0' &&
                          text.find_first_not_of("0123456789") == std::string::npos;
    return isNumber ? std::string() : "'" + text + "' is no number of a call";
}

void declare(CLI::App& app, Options& options)
{
    app.allow_windows_style_options(false);
    app.set_help_flag("-h,--help", "Print this help and end");
    app.set_version_flag("--version", "pvwapi-log " PVWAPI_VERSION, "Print the version and end");
    app.footer(kFooter);
    app.add_option("FILE", options.file, "The log")->type_name("");
    app.add_option("-c,--call", options.call, "The call of this number alone, with its details")
        ->check(numberProblem)
        ->type_name("NUMBER");
    app.add_flag("-x,--expand", options.expand, "Each call with its details: fields decoded, XML indented");
    app.add_option("--operation", options.operation,
                   "Operations whose name holds this; with * or ? all of the name. Case does not count")
        ->type_name("NAME");
    app.add_flag("--failed", options.failed, "Calls that did not succeed");
    app.add_option("--since", options.since, "Calls from this time on, such as 2026-01-31 or '2026-01-31 23:59'")
        ->check(timeProblem)
        ->type_name("TIME");
    app.add_option("--until", options.until, "Calls up to this time; a day is meant whole")
        ->check(timeProblem)
        ->type_name("TIME");
    app.add_flag("-f,--follow", options.follow, "Go on as the log grows, also when it is begun anew");
    app.add_flag("--json", options.json, "A JSON object a call, each in a line of its own");
    app.add_flag("--show-secrets", options.showSecrets, "Mask nothing");
}

std::string helpOf(const CLI::App& app, std::size_t columns)
{
    constexpr std::size_t kNarrow = 80;
    constexpr std::size_t kFirstOfNarrow = 6;  // descriptions stand below their options then
    if (columns > 0 && columns < kNarrow) app.get_formatter()->column_width(kFirstOfNarrow);
    return columns > 0 ? wrapped(app.help(), columns) : app.help();
}

}  // namespace

Options readOptions(std::vector<std::string> words, std::size_t columns)
{
    Options options;
    CLI::App app(kSummary, "pvwapi-log");
    declare(app, options);
    std::ranges::reverse(words);  // this is the order in which the library below takes them
    try {
        app.parse(std::move(words));
    } catch (const CLI::CallForHelp&) {
        options.help = helpOf(app, columns);
    } catch (const CLI::CallForVersion& version) {
        options.help = std::string(version.what()) + '\n';
    } catch (const CLI::ParseError& error) {
        throw Problem(error.what() + std::string("; see pvwapi-log --help"));
    }
    return options;
}

}  // namespace logreader
