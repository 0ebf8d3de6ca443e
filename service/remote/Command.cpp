#include "service/remote/Command.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

#include "service/base/Json.h"
#include "service/base/Text.h"
#include "service/remote/Files.h"
#include "service/remote/Remote.h"
#include "service/seed/Seed.h"

namespace service::remote {

namespace {

constexpr int kRefused = 1;
constexpr int kFaultHere = 2;
constexpr int kNoService = 3;

// What the words of one command were; it lives as long as the command.
struct Words {
    bool empty = false;
    std::string first;
    std::string second;
    std::string organisation;
};

std::string encoded(std::string_view text)
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string out;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        const bool plain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-';
        out += plain ? std::string(1, c) : std::string{'%', kDigits[byte >> 4U], kDigits[byte & 0x0FU]};
    }
    return out;
}

void ask(Command& command, std::string method, std::string target, std::function<std::string()> body = {})
{
    command.method = std::move(method);
    command.target = "/control/" + std::move(target);
    command.body = std::move(body);
}

void addState(CLI::App& control, Command& command, const std::shared_ptr<Words>& words)
{
    CLI::App* const reset = control.add_subcommand("reset", "Back to what the service was started with");
    reset->add_flag("--empty", words->empty, "Back to nothing at all");
    reset->callback([&command, words] {
        ask(command, "POST", "reset", [words] { return words->empty ? R"({"empty": true})" : std::string(); });
    });
    CLI::App* const seed = control.add_subcommand("seed", "Fill an empty service");
    seed->add_option("FILE", words->first, "A file of JSON, or demo")->required();
    seed->callback(
        [&command, words] { ask(command, "POST", "seed", [words] { return seed::load(words->first).dump(); }); });
    CLI::App* const save = control.add_subcommand("export", "Write all that the service knows to a file");
    save->add_option("FILE", words->first, "The file; - is standard output")->required();
    save->callback([&command, words] {
        ask(command, "GET", "state");
        command.file = words->first == "-" ? "" : words->first;
    });
    CLI::App* const load = control.add_subcommand("import", "Replace all that the service knows by what a file holds");
    load->add_option("FILE", words->first, "The file; - is standard input")->required();
    load->callback([&command, words] { ask(command, "PUT", "state", [words] { return readFile(words->first); }); });
}

// A moment is a time as the service writes it, or milliseconds since 1970.
std::string momentBody(const std::string& moment)
{
    const auto now = wholeNumber(moment, 0, std::numeric_limits<long long>::max());
    return now ? Json{{"now", *now}}.dump() : Json{{"time", moment}}.dump();
}

void addClock(CLI::App& control, Command& command, const std::shared_ptr<Words>& words)
{
    CLI::App* const clock = control.add_subcommand("clock", "The service's clock");
    clock->require_subcommand(0, 1);
    clock->callback([&command, clock] {
        if (clock->get_subcommands().empty()) ask(command, "GET", "clock");
    });
    CLI::App* const set = clock->add_subcommand("set", "From now on it is this moment");
    set->add_option("MOMENT", words->first, "Such as 2026-02-01T09:30:00Z, or milliseconds since 1970")->required();
    set->callback([&command, words] { ask(command, "PUT", "clock", [words] { return momentBody(words->first); }); });
    CLI::App* const advance = clock->add_subcommand("advance", "Put it forward");
    auto seconds = std::make_shared<long long>(0);
    advance->add_option("SECONDS", *seconds, "How far; less than none puts it back")->required();
    advance->callback([&command, seconds] {
        ask(command, "POST", "clock/advance", [seconds] { return Json{{"seconds", *seconds}}.dump(); });
    });
    clock->add_subcommand("machine", "Back to the machine's time")->callback([&command] {
        ask(command, "DELETE", "clock");
    });
}

void addPolicy(CLI::App& control, Command& command, const std::shared_ptr<Words>& words)
{
    CLI::App* const policy = control.add_subcommand("policy", "What organisations allow");
    CLI::Option* const name = policy->add_option("NAME", words->first, "The feature");
    CLI::Option* const state = policy->add_option("STATE", words->second, "on or off");
    state->check(CLI::IsMember({"on", "off"}));
    name->needs(state);
    policy->add_option("--organisation", words->organisation, "Which one, where there are several");
    policy->callback([&command, words] {
        const std::string query =
            words->organisation.empty() ? std::string() : "?organisation=" + encoded(words->organisation);
        if (words->first.empty()) return ask(command, "GET", "policy" + query);
        ask(command, "PUT", "policy" + query, [words] { return Json{{words->first, words->second == "on"}}.dump(); });
    });
}

// Words that begin like JSON are it; others name a file of it.
std::string faultBody(const std::string& words)
{
    const std::string_view text = trimmed(words);
    return text.starts_with('{') || text.starts_with('[') ? words : readFile(words);
}

void addFaults(CLI::App& control, Command& command, const std::shared_ptr<Words>& words)
{
    CLI::App* const faults = control.add_subcommand("faults", "What goes wrong, and how often it did");
    faults->require_subcommand(0, 1);
    faults->callback([&command, faults] {
        if (faults->get_subcommands().empty()) ask(command, "GET", "faults");
    });
    CLI::App* const add = faults->add_subcommand("add", "Let something go wrong");
    add->add_option("FAULT", words->first, "JSON, or a file of it; - is standard input")->required();
    add->callback([&command, words] { ask(command, "POST", "faults", [words] { return faultBody(words->first); }); });
    CLI::App* const clear = faults->add_subcommand("clear", "Let all go well again");
    clear->add_option("ID", words->first, "Only this one");
    clear->callback([&command, words] {
        ask(command, "DELETE", words->first.empty() ? "faults" : "faults/" + encoded(words->first));
    });
}

int deliver(const Command& command, const Reply& reply)
{
    constexpr unsigned kGood = 200;
    if (reply.status == kGood) {
        if (command.file.empty()) {
            std::cout << reply.body << std::flush;
        } else {
            writeFile(command.file, reply.body);
        }
        return 0;
    }
    const Json body = Json::parse(reply.body, nullptr, false);
    const bool told = body.is_object() && body.contains("error") && body.at("error").is_string();
    std::cerr << "pvwapi-service: "
              << (told ? body.at("error").get<std::string>() : "the service answers " + std::to_string(reply.status))
              << std::endl;
    return kRefused;
}

}  // namespace

CLI::App* addCommand(CLI::App& app, Command& command)
{
    CLI::App* const control = app.add_subcommand("control", "Tell a running service what to be");
    control->require_subcommand(1);
    control->add_option("--url", command.url, "Where the service is")
        ->capture_default_str()
        ->envname("PVWAPI_CONTROL_URL");
    control->add_option("--token", command.token, "The token that it said")->envname("PVWAPI_CONTROL_TOKEN");
    const auto words = std::make_shared<Words>();
    addState(*control, command, words);
    addClock(*control, command, words);
    addPolicy(*control, command, words);
    addFaults(*control, command, words);
    return control;
}

int run(const Command& command)
{
    try {
        if (command.token.empty()) throw std::invalid_argument("--token or PVWAPI_CONTROL_TOKEN has to be given");
        const Remote remote(command.url, command.token);
        return deliver(command, remote.send(command.method, command.target, command.body ? command.body() : ""));
    } catch (const NoConnection& error) {
        std::cerr << "pvwapi-service: " << error.what() << std::endl;
        return kNoService;
    } catch (const std::exception& error) {
        std::cerr << "pvwapi-service: " << error.what() << std::endl;
        return kFaultHere;
    }
}

}  // namespace service::remote
