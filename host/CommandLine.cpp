#include "host/CommandLine.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <map>

#include "host/Errors.h"
#include "host/Help.h"
#include "host/Look.h"
#include "host/Network.h"
#include "host/Numbers.h"
#include "host/Profile.h"
#include "host/Suggest.h"
#include "host/System.h"
#include "host/Words.h"

namespace host {

namespace {

constexpr const char* kAutomatic = "auto";

// Lists the operations and the commands that call them. It stands in no help: it is for the tests and the curious.
constexpr const char* kOperations = "--operations";

constexpr const char* kVerbose = "-v";

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
std::vector<std::string> subcommandsOf(const CLI::App& app)
{
    std::vector<std::string> names;
    for (const CLI::App* const sub : app.get_subcommands({})) names.push_back(sub->get_name());
    return names;
}

/// The reason, and where the help of the command is.
[[noreturn]] void refuseAt(const std::string& path, const std::string& why)
{
    const std::string program = path.empty() ? "pvwapi" : "pvwapi " + path;
    throw LocalProblem(why + (why.ends_with('?') ? " See " : "; see ") + program + " --help");
}

/// The library's own words, but for one that its user need not know the insides of.
std::string reasonOf(const CLI::ParseError& error)
{
    const std::string reason = error.what();
    const std::size_t most = reason.find(": At Most ");
    if (most != std::string::npos) return reason.substr(0, most) + ": may be given once only";
    const bool isMissing = dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr && reason.ends_with("missing");
    return isMissing ? reason.substr(0, reason.find(':')) + ": its value is missing" : reason;
}

/// The names in the list, each of them a column that the command's table can have.
std::vector<std::string> columnsOf(const Command& command, const std::string& list)
{
    if (command.columns == nullptr) refuseAt(command.path, "--columns: '" + command.path + "' shows no table");
    const std::vector<std::string> known = command.columns();
    std::vector<std::string> names = CLI::detail::split(list, ',');
    for (std::string& name : names) {
        CLI::detail::trim(name);
        if (std::ranges::find(known, name) != known.end()) continue;
        refuseAt(command.path,
                 "--columns: '" + name + "' is no column of '" + command.path + "'" + didYouMean(name, known));
    }
    return names;
}

class Parser {
public:
    Parser(const Commands& commands, const std::vector<std::string>& words);

    Request read();

private:
    void add(const Command& command);
    CLI::App& appAt(const std::string& path);
    const CLI::App& reached() const;
    std::string pathOf(const CLI::App& app) const;
    std::string unknownWord() const;
    std::vector<std::string> optionsOf(const CLI::App& app) const;
    std::vector<Argument> arguments() const;
    [[noreturn]] void refuseWord(const std::string& word) const;
    Request help() const;
    Request request() const;
    Settings settings(const Command& command) const;

    const Commands& all_;
    const std::vector<Argument> common_ = commonArguments();
    const std::vector<std::string>& words_;  ///< as they were typed
    CLI::App root_{"", "pvwapi"};
    std::map<std::string, CLI::App*> apps_;
    std::map<const CLI::App*, const Command*> commands_;
};

void addOption(CLI::App& app, const Argument& argument)
{
    CLI::Option& option = *app.add_option(argument.name);
    option.type_name(argument.kind == Kind::number ? "<number>" : "<text>");
    option.check([&argument](const std::string& text) { return problemWith(argument, bare(text)); });
    if (argument.kind == Kind::list) option.multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    if (!argument.name.starts_with('-')) {
        if (argument.kind == Kind::list) option.expected(0, -1)->allow_extra_args();
        else option.required();
    }
}

void addArgument(CLI::App& app, const Argument& argument)
{
    if (argument.kind == Kind::flag) {
        app.add_flag(argument.name);
    } else {
        addOption(app, argument);
    }
}

void addValues(Values& values, const CLI::App& app, const std::vector<Argument>& arguments)
{
    for (const Argument& argument : arguments) {
        const CLI::Option& option = *app.get_option(argument.name);
        if (option.count() == 0) continue;
        for (const std::string& word : option.results()) values[argument.name].push_back(bare(word));
    }
}

Parser::Parser(const Commands& commands, const std::vector<std::string>& words) : all_(commands), words_(words)
{
    root_.allow_windows_style_options(false);
    root_.set_help_flag("-h,--help");
    root_.set_version_flag("--version", "pvwapi " PVWAPI_VERSION);
    root_.add_flag(std::string(kOperations))->group("");
    root_.require_subcommand(0, 1);
    for (const Argument& argument : common_) addArgument(root_, argument);

    // Of a topic that nobody has typed no command can be meant; to make them all takes longer than to run one.
    for (const Command& command : commands) {
        const std::string topic = command.path.substr(0, command.path.find(' '));
        if (std::ranges::find(words, topic) != words.end()) add(command);
        else appAt(topic);
    }
}

void Parser::add(const Command& command)
{
    CLI::App& app = appAt(command.path);
    if (command.run == nullptr && command.tell == nullptr) return;
    commands_[&app] = &command;
    for (const Argument& argument : command.arguments) addArgument(app, argument);
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
    app->fallthrough()->require_subcommand(0, 1);
    apps_[path] = app;
    return *app;
}

Request Parser::read()
{
    std::vector<std::string> words = shielded(words_, arguments());
    std::ranges::reverse(words);  // this is the order in which the library below takes them
    try {
        root_.parse(std::move(words));
    } catch (const CLI::CallForVersion& version) {
        Request told;
        told.help = std::string(version.what()) + '\n';
        return told;
    } catch (const CLI::ParseError& error) {
        if (const std::string word = unknownWord(); !word.empty()) refuseWord(word);
        if (dynamic_cast<const CLI::CallForHelp*>(&error) != nullptr) return help();
        refuseAt(pathOf(reached()), reasonOf(error));
    }
    return request();
}

/// All that there are, of whatever command.
std::vector<Argument> Parser::arguments() const
{
    std::vector<Argument> arguments = common_;
    for (const Command& command : all_) {
        arguments.insert(arguments.end(), command.arguments.begin(), command.arguments.end());
    }
    return arguments;
}

/// The app of the last word that made a command.
const CLI::App& Parser::reached() const
{
    const CLI::App* app = &root_;
    while (!app->get_subcommands().empty()) app = app->get_subcommands().front();
    return *app;
}

std::string Parser::pathOf(const CLI::App& app) const
{
    const auto found = std::ranges::find(apps_, &app, [](const auto& entry) { return entry.second; });
    return found != apps_.end() ? found->first : "";
}

/// The first of the typed words that has no place; none where each has one.
std::string Parser::unknownWord() const
{
    std::vector<std::string> unknown = root_.remaining(true);
    std::erase(unknown, "--");
    if (unknown.empty()) return {};
    std::ranges::transform(unknown, unknown.begin(), bare);
    const auto first = std::ranges::find_first_of(words_, unknown);
    return first != words_.end() ? *first : unknown.front();
}

/// The options that can stand at the app, by their names.
std::vector<std::string> Parser::optionsOf(const CLI::App& app) const
{
    std::vector<std::string> names{"--help", "--version"};
    const Command* const command = commandAt(all_, pathOf(app));
    for (const Argument& argument : common_) names.push_back(argument.name);
    if (command == nullptr) return names;
    for (const Argument& argument : command->arguments) {
        if (isOption(argument)) names.push_back(argument.name);
    }
    return names;
}

void Parser::refuseWord(const std::string& word) const
{
    const CLI::App& app = reached();
    const std::string path = pathOf(app);
    const std::vector<std::string> commands = subcommandsOf(app);
    if (std::ranges::find(commands, word) != commands.end())
        refuseAt(path, "'" + word + "' has to stand before '--', behind which there are values only");
    const bool isOption = word.size() > 1 && word.starts_with('-');
    std::string what = "'" + word + "' is ";
    if (isOption) what += "no option" + (path.empty() ? "" : " of '" + path + "'");
    else if (commands.empty()) what += "one word too many";
    else what += "no command" + (path.empty() ? "" : " of '" + path + "'");
    const std::vector<std::string> known = isOption ? optionsOf(app) : commands;
    refuseAt(path, what + didYouMean(word.substr(0, word.find('=')), known));
}

Request Parser::help() const
{
    Request request;
    const CLI::Option& color = *root_.get_option("--color");
    const Look look = lookFor(color.count() > 0 ? color.results().back() : kAutomatic);
    request.help = helpText(pageOf(all_, pathOf(reached())), look);
    return request;
}

Request Parser::request() const
{
    Request request;
    if (root_.count(kOperations) > 0) {
        request.help = operationsOf(all_);
        return request;
    }
    const CLI::App& app = reached();
    const auto command = commands_.find(&app);
    if (command == commands_.end())
        refuseAt(pathOf(app), "a command is missing, one of " + joined(subcommandsOf(app), ", "));

    request.command = command->second;
    addValues(request.values, app, request.command->arguments);
    request.settings = settings(*request.command);
    if (request.command->tell == nullptr) return request;

    request.help = request.command->tell(all_, request.values, request.settings.look);
    request.command = nullptr;
    return request;
}

Settings Parser::settings(const Command& command) const
{
    Values common;
    addValues(common, root_, common_);
    const auto last = [&](const char* name, const std::string& otherwise) {
        const auto found = common.find(name);
        return found != common.end() ? found->second.back() : otherwise;
    };
    if (command.tell == nullptr) {
        const std::string profile = last("--profile", system::environment("PVWAPI_PROFILE"));
        common.merge(readProfile(last("--config", ""), profile, common_));
    }

    Settings settings;
    settings.format = last("--format", "table") == "json" ? Format::json : Format::table;
    settings.baseUrl = last("--base-url", system::environment("PVWAPI_BASE_URL"));
    if (namesUser(settings.baseUrl))
        throw LocalProblem("a user in the service's address is not taken; see pvwapi help credentials");
    settings.credentialsFile = last("--credentials", "");
    settings.timeout = millisecondsIn(last("--timeout", "")).value_or(0);
    settings.sight = {static_cast<int>(root_.count(kVerbose)), common.contains("--dry-run"),
                      common.contains("--show-secrets")};
    settings.agreed = common.contains("--yes");
    settings.look = lookFor(last("--color", kAutomatic));
    settings.look.header = !common.contains("--no-header");
    if (common.contains("--columns")) settings.look.columns = columnsOf(command, last("--columns", ""));
    return settings;
}

}  // namespace

std::string problemWith(const Argument& argument, const std::string& value)
{
    if (argument.kind == Kind::number) return numberProblem(value);
    if (argument.kind == Kind::seconds) return secondsProblem(value);
    const std::vector<std::string>& choices = argument.choices;
    if (choices.empty() || std::ranges::find(choices, value) != choices.end()) return {};
    return "'" + value + "' is none of " + joined(choices, ", ") + didYouMean(value, choices);
}

std::vector<Argument> commonArguments()
{
    return {
        {"--format", "How results are shown: table, the default, or json", Kind::text, {"table", "json"}, true},
        {"--columns", "The columns of a table, such as userID,role, in the order in which they are to stand"},
        {"--no-header", "Leave the names of a table's columns out", Kind::flag},
        {"--color",
         "Bold headings: auto, the default, on a terminal",
         Kind::text,
         {kAutomatic, "always", "never"},
         true},
        {"--yes", "Ask nothing before something is deleted", Kind::flag},
        {"--timeout", "How long each call may take; fractions are allowed", Kind::seconds, {}, true},
        {kVerbose, "Tell of each exchange with the service on standard error; -vv shows it", Kind::flag},
        {"--dry-run", "Print the first request and send nothing", Kind::flag},
        {"--show-secrets", "Show passwords and credentials in what -vv and --dry-run print", Kind::flag},
        {"--base-url",
         "The service's operation URL, else PVWAPI_BASE_URL, else the library's own; such as "
         "http://host/kznconnect/op.do",
         Kind::text,
         {},
         true,
         {"PVWAPI_BASE_URL"}},
        {"--credentials",
         "A file of credentials, in the place of the environment; - is standard input",
         Kind::file,
         {},
         true,
         {"PVWAPI_USER", "PVWAPI_CRED"}},
        {"--profile", "The profile of the configuration file that holds; else PVWAPI_PROFILE"},
        {"--config", "The configuration file, in the place of the user's own", Kind::file},
    };
}

Request readCommandLine(const Commands& commands, const std::vector<std::string>& words)
{
    return Parser(commands, words).read();
}

}  // namespace host
