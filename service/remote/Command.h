#pragma once

#include <functional>
#include <string>

namespace CLI {
class App;
}

namespace service::remote {

// What "pvwapi-service control ..." asks of a running service.
struct Command {
    std::string url = "http://127.0.0.1:8420";
    std::string token;

    std::string method;
    std::string target;
    std::function<std::string()> body;  // read when it is sent; none where nothing is
    std::string file;                   // where the reply goes; empty: to standard output
};

// Adds the subcommand. Once it has been parsed, `command` holds what to send.
CLI::App* addCommand(CLI::App& app, Command& command);

// Sends it. 0: done; 1: the service refused; 2: something here is at fault; 3: no service answers.
int run(const Command& command);

}  // namespace service::remote
