#include "service/tape/TapeCommands.h"

#include <CLI/CLI.hpp>
#include <boost/asio/io_context.hpp>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <memory>

#include "service/base/Process.h"
#include "service/base/Refusal.h"
#include "service/control/Guard.h"
#include "service/http/Listen.h"
#include "service/http/Server.h"
#include "service/tape/Player.h"
#include "service/tape/Recorder.h"
#include "service/tape/Verifier.h"

namespace service::tape {

namespace {

constexpr int kAllEqual = 0;
constexpr int kDifferences = 1;
constexpr int kBadInput = 2;
constexpr int kNoConnection = 3;
constexpr std::uint64_t kLargestBody = 512ULL * 1024 * 1024;

// What the command line asks for.
struct TapeOptions {
    std::string tape;
    std::string upstream;
    std::string authorities;
    std::string secrets;
    bool overwrite = false;
    boost::asio::ip::tcp::endpoint listen;
};

using Answer = std::function<http::Response(const http::Request&, const Origin& own)>;

// A server's answers, from a function that is told where the server is reached. No tape holds other methods.
class Bridge final : public http::Answerer {
public:
    explicit Bridge(Answer answer) : answer_(std::move(answer)) {}

    void isReachedAt(const http::Server& server)
    {
        own_ = originOf("http://" + server.address());
        port_ = server.port();
    }

    std::optional<http::Response> refused(const http::RequestHead& head) const override
    {
        const std::string foreign = control::whyForeign(head, port_);
        if (!foreign.empty()) return http::refusal(403, foreign, exceptionid::kAccessDenied);
        if (head.method != "POST" && head.method != "GET") return http::wrongMethod("GET, POST");
        return std::nullopt;
    }
    http::Response answer(const http::Request& request) const override { return answer_(request, own_); }
    std::uint64_t bodyLimit(std::string_view) const override { return kLargestBody; }

private:
    Answer answer_;
    Origin own_;
    unsigned short port_ = 0;
};

// Until the process is asked to end.
void serve(const boost::asio::ip::tcp::endpoint& listen, Answer answer)
{
    boost::asio::io_context io(1);
    Bridge bridge(std::move(answer));
    const http::ConnectionLimits limits;
    const http::Server server(io, listen, bridge, limits);
    bridge.isReachedAt(server);
    const StopOnRequest stop(io);
    std::cout << "listening on " << server.address() << std::endl;
    io.run();
}

int record(const TapeOptions& options)
{
    if (!options.overwrite && std::filesystem::exists(std::filesystem::u8path(options.tape))) {
        throw std::runtime_error(options.tape + " is there already; --overwrite makes it anew");
    }
    Upstream upstream(originOf(options.upstream), options.authorities);
    Recorder recorder(upstream, TapeFile(options.tape));
    serve(options.listen,
          [&recorder](const http::Request& request, const Origin& own) { return recorder.pass(request, own); });
    std::clog << recorder.recorded() << " exchanges are on the tape" << std::endl;
    return kAllEqual;
}

Tape load(const std::string& path)
{
    const std::string text = TapeFile(path).read();
    try {
        return readTape(text);
    } catch (const TapeError& error) {
        throw std::runtime_error(path + ", " + error.what());
    }
}

int replay(const TapeOptions& options)
{
    Player player(load(options.tape));
    serve(options.listen, [&player](const http::Request& request, const Origin& own) {
        const std::size_t refused = player.refused();
        http::Response response = player.play(request, own.text());
        if (player.refused() != refused) std::clog << "refused: " << response.body << std::endl;
        return response;
    });
    std::clog << player.played() << " of " << player.size() << " exchanges were played; " << player.refused()
              << " requests fitted none" << std::endl;
    return player.refused() == 0 ? kAllEqual : kDifferences;
}

// One a line; none without a file.
std::vector<std::string> readSecrets(const std::string& path)
{
    std::vector<std::string> secrets;
    if (path.empty()) return secrets;
    std::ifstream file(std::filesystem::u8path(path));
    if (!file) throw std::runtime_error("the secrets in " + path + " cannot be read");
    for (std::string line; std::getline(file, line);) secrets.push_back(line);
    return secrets;
}

int verify(const TapeOptions& options)
{
    const Tape tape = load(options.tape);
    const std::vector<std::string> secrets = readSecrets(options.secrets);
    const int needed = secretsOf(tape);
    if (static_cast<int>(secrets.size()) < needed) {
        throw std::runtime_error("the tape needs " + std::to_string(needed) + " secrets; --secrets FILE has " +
                                 std::to_string(secrets.size()));
    }
    Upstream upstream(originOf(options.upstream), options.authorities);
    Verifier verifier(upstream.origin().text(), secrets,
                      [&upstream](const http::Request& request) { return upstream.ask(request); });
    std::size_t different = 0;
    try {
        for (std::size_t i = 0; i < tape.size(); ++i) {
            const std::string difference = verifier.check(tape[i]);
            if (difference.empty()) continue;
            ++different;
            std::cout << "exchange " << i + 1 << " (line " << tape[i].line << "): " << difference << std::endl;
        }
    } catch (const NoConnection& error) {
        std::cerr << "pvwapi-service: " << error.what() << std::endl;
        return kNoConnection;
    }
    std::cout << tape.size() << " exchanges, " << different << " different" << std::endl;
    return different == 0 ? kAllEqual : kDifferences;
}

std::string faultOfUrl(const std::string& url)
{
    try {
        originOf(url);
        return {};
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
}

void addUpstream(CLI::App& command, TapeOptions& options)
{
    command.add_option("--upstream", options.upstream, "The service: scheme, host and port of its URL count")
        ->required()
        ->check(faultOfUrl);
    command.add_option("--ca", options.authorities, "The authorities that are believed, instead of the system's");
}

void addListen(CLI::App& command, TapeOptions& options)
{
    http::parseListen(http::kDefaultListen, options.listen);
    command.add_option("--listen", "Where to listen; port 0 takes a free one")
        ->default_str(http::kDefaultListen)
        ->check([&options](const std::string& text) { return http::parseListen(text, options.listen); });
}

}  // namespace

void addCommands(CLI::App& app, std::function<int()>& chosen)
{
    const auto options = std::make_shared<TapeOptions>();

    CLI::App* const recording = app.add_subcommand("record", "Stand before a service, and write a tape");
    recording->add_option("--to", options->tape, "The tape")->required();
    recording->add_flag("--overwrite", options->overwrite, "Make the tape anew where there is one");
    addUpstream(*recording, *options);
    addListen(*recording, *options);
    recording->callback([&chosen, options] { chosen = [options] { return record(*options); }; });

    CLI::App* const replaying = app.add_subcommand("replay", "Answer from a tape");
    replaying->add_option("tape", options->tape, "The tape")->required();
    addListen(*replaying, *options);
    replaying->callback([&chosen, options] { chosen = [options] { return replay(*options); }; });

    CLI::App* const verifying = app.add_subcommand("verify", "Play a tape against a service, and compare");
    verifying->add_option("tape", options->tape, "The tape")->required();
    verifying->add_option("--secrets", options->secrets, "A file with the tape's secrets, one a line");
    addUpstream(*verifying, *options);
    verifying->callback([&chosen, options] { chosen = [options] { return verify(*options); }; });
}

}  // namespace service::tape
