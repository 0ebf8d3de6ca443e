#include "host/CommandLine.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <map>
#include <optional>

#include "host/Errors.h"
#include "host/System.h"

namespace host {

namespace {

constexpr const char* kSummary = "Work with the workspaces of the service from the command line.";
constexpr const char* kFooter =
    "\nCredentials come from the environment: PVWAPI_USER with PVWAPI_PASSWORD or PVWAPI_TOKEN\n"
    "(and PVWAPI_ISP for another identity provider), or PVWAPI_CRED, the credential that login\n"
    "prints; or from a file of lines such as user=NAME and password=WORD that nobody but you can\n"
    "read. A command signs in and out by itself unless it is given the credential of a session.\n"
    "Exit status: 0 done, 1 refused, 2 the command line or this machine is at fault, 3 no connection,\n"
    "4 stopped by --timeout or Ctrl-C.";

// Lists the operations and the commands that call them. It stands in no help: it is for the tests and the curious.
constexpr const char* kOperations = "--operations";

constexpr const char* kVerbose = "-v";

std::vector<Argument> commonArguments()
{
    return {
        {"--format", "How results are shown: table, the default, or json", Kind::text, {"table", "json"}},
        {"--base-url",
         "The service's operation URL, such as http://host/kznconnect/op.do; else PVWAPI_BASE_URL, else "
         "the library's own"},
        {"--credentials", "A file of credentials, in the place of the environment; - is standard input"},
        {"--timeout", "How long each call may take; fractions are allowed", Kind::seconds},
        {kVerbose, "Tell of each exchange with the service on standard error; -vv shows it", Kind::flag},
        {"--dry-run", "Print the first request and send nothing", Kind::flag},
        {"--show-secrets", "Show passwords and credentials in what -vv and --dry-run print", Kind::flag},
    };
}

/// Nothing where the text is no time that the library can take.
std::optional<unsigned int> millisecondsIn(const std::string& text)
{
    constexpr double kMost = 4'000'000;
    double seconds = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, seconds, std::chars_format::fixed);
    if (error != std::errc() || stop != end || !(seconds >= 0.001 && seconds <= kMost)) return std::nullopt;
    return static_cast<unsigned int>(seconds * 1000);
}

std::string secondsProblem(const std::string& text)
{
    return millisecondsIn(text) ? std::string() : "'" + text + "' is not a number of seconds above 0";
}

std::string joined(const std::vector<std::string>& words, const char* separator)
{
    std::string text;
    for (const std::string& word : words) text += (text.empty() ? "" : separator) + word;
    return text;
}

std::string numberProblem(const std::string& text)
{
    int number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end ? std::string() : "'" + text + "' is not a whole number";
}

/// A line for each operation that a command calls: the command's words, a tab, the operation. A command that forgot to
/// name any shows by a line without one.
std::string operationsOf(const Commands& commands)
{
    std::string lines;
    for (const Command& command : commands) {
        for (const std::string& operation : command.operations) lines += command.path + '\t' + operation + '\n';
        if (command.run != nullptr && command.operations.empty()) lines += command.path + "\t\n";
    }
    return lines;
}

/// What can follow the words so far.
std::string subcommandsOf(const CLI::App& app)
{
    std::vector<std::string> names;
    for (const CLI::App* const sub : app.get_subcommands({})) names.push_back(sub->get_name());
    return joined(names, ", ");
}

class Parser {
public:
    explicit Parser(const Commands& commands);

    Request read(std::vector<std::string> words);

private:
    CLI::App& appAt(const std::string& path);
    Request request() const;

    const Commands& all_;
    CLI::App root_{kSummary, "pvwapi"};
    std::map<std::string, CLI::App*> apps_;
    std::map<const CLI::App*, const Command*> commands_;
};

void setType(CLI::Option& option, Kind kind)
{
    switch (kind) {
    case Kind::number: option.type_name("NUMBER")->check(numberProblem); break;
    case Kind::seconds: option.type_name("SECONDS")->check(secondsProblem); break;
    default: option.type_name("TEXT");
    }
}

void addOption(CLI::App& app, const Argument& argument)
{
    CLI::Option& option = *app.add_option(argument.name, argument.help);
    setType(option, argument.kind);
    if (argument.kind == Kind::list) option.multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    if (!argument.name.starts_with('-')) {
        if (argument.kind == Kind::list) option.expected(0, -1)->allow_extra_args();
        else option.required();
    }
    if (argument.choices.empty()) return;

    option.type_name(joined(argument.choices, "|"));
    option.check([choices = argument.choices](const std::string& text) {
        const bool known = std::ranges::find(choices, text) != choices.end();
        return known ? std::string() : "'" + text + "' is none of " + joined(choices, ", ");
    });
}

void addArgument(CLI::App& app, const Argument& argument)
{
    if (argument.kind == Kind::flag) {
        app.add_flag(argument.name, argument.help);
    } else {
        addOption(app, argument);
    }
}

void addValues(Values& values, const CLI::App& app, const std::vector<Argument>& arguments)
{
    for (const Argument& argument : arguments) {
        const CLI::Option& option = *app.get_option(argument.name);
        if (option.count() > 0) values[argument.name] = option.results();
    }
}

Parser::Parser(const Commands& commands) : all_(commands)
{
    root_.allow_windows_style_options(false);
    root_.set_help_flag("-h,--help", "Print this help and end");
    root_.set_version_flag("--version", "pvwapi " PVWAPI_VERSION, "Print the version and end");
    root_.add_flag(std::string(kOperations))->group("");
    root_.footer(kFooter);
    root_.require_subcommand(0, 1);
    for (const Argument& argument : commonArguments()) addArgument(root_, argument);

    for (const Command& command : commands) {
        CLI::App& app = appAt(command.path);
        app.description(command.help);
        if (command.run == nullptr) continue;
        commands_[&app] = &command;
        for (const Argument& argument : command.arguments) addArgument(app, argument);
    }
}

/// The app of a path, made with all that lead to it.
CLI::App& Parser::appAt(const std::string& path)
{
    if (path.empty()) return root_;
    if (const auto found = apps_.find(path); found != apps_.end()) return *found->second;

    const std::size_t blank = path.rfind(' ');
    const bool nested = blank != std::string::npos;
    CLI::App& above = appAt(nested ? path.substr(0, blank) : "");
    CLI::App* const app = above.add_subcommand(nested ? path.substr(blank + 1) : path);
    app->fallthrough()->require_subcommand(0, 1)->footer("");
    apps_[path] = app;
    return *app;
}

Request Parser::read(std::vector<std::string> words)
{
    std::ranges::reverse(words);  // this is the order in which the library below takes them
    try {
        root_.parse(std::move(words));
    } catch (const CLI::CallForHelp&) {
        Request help;
        help.help = root_.help();
        return help;
    } catch (const CLI::CallForVersion& version) {
        Request help;
        help.help = std::string(version.what()) + '\n';
        return help;
    } catch (const CLI::ParseError& error) {
        throw LocalProblem(error.what() + std::string("; see pvwapi --help"));
    }
    return request();
}

Request Parser::request() const
{
    const CLI::App* app = &root_;
    while (!app->get_subcommands().empty()) app = app->get_subcommands().front();

    Request request;
    if (root_.count(kOperations) > 0) {
        request.help = operationsOf(all_);
        return request;
    }
    const auto command = commands_.find(app);
    if (command == commands_.end()) {
        throw LocalProblem("a command is missing, one of " + subcommandsOf(*app) + "; see pvwapi --help");
    }

    request.command = command->second;
    addValues(request.values, *app, request.command->arguments);

    Values common;
    addValues(common, root_, commonArguments());
    const auto last = [&](const char* name, const std::string& otherwise) {
        const auto found = common.find(name);
        return found != common.end() ? found->second.back() : otherwise;
    };
    request.settings.format = last("--format", "table") == "json" ? Format::json : Format::table;
    request.settings.baseUrl = last("--base-url", system::environment("PVWAPI_BASE_URL"));
    request.settings.credentialsFile = last("--credentials", "");
    request.settings.timeout = millisecondsIn(last("--timeout", "")).value_or(0);
    request.settings.sight = {static_cast<int>(root_.count(kVerbose)), common.contains("--dry-run"),
                              common.contains("--show-secrets")};
    return request;
}

}  // namespace

Request readCommandLine(const Commands& commands, std::vector<std::string> words)
{
    return Parser(commands).read(std::move(words));
}

}  // namespace host
