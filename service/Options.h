#pragma once

#include <boost/asio/ip/tcp.hpp>
#include <functional>
#include <string>

#include "service/Context.h"
#include "service/remote/Command.h"

namespace service {

// What the command line asks for.
struct Options {
    std::string dataFile;
    boost::asio::ip::tcp::endpoint listen;
    std::string seed;          // empty, or "demo", or a file: what to begin with
    std::string controlToken;  // empty where one is to be made
    bool readyJson = false;
    bool verbose = false;  // a line for each request
    bool endWithParent = false;
    Settings settings;
    bool controls = false;  // another service, as `command` says
    remote::Command command;
    std::function<int()> tapeCommand;  // record, replay or verify, where one of them is asked for
};

// How reading the command line ended: go on, or leave at once with this exit status.
struct OptionsResult {
    bool goOn = false;
    int exitStatus = 0;
};

// Says on standard error what is wrong with the arguments, in one line.
OptionsResult readOptions(int argc, const char* const* argv, Options& options);

}  // namespace service
