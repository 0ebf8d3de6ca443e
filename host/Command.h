// What a subcommand is: a line in a table of its topic. Help, completion, man pages and questions are made from it too.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace host {

class Call;
struct Look;

enum class Kind { text, number, seconds, flag, list, file };

/// "name" stands at a fixed place, "--name" anywhere. Placed ones must be given, the others may be; a placed list comes
/// last and takes all that follows, be it nothing where none is needed.
struct Argument {
    std::string name;
    std::string help;
    Kind kind = Kind::text;
    std::vector<std::string> choices = {};    ///< the texts that are allowed; empty allows any
    bool inProfile = false;                   ///< whether a profile of the configuration file may give it
    std::vector<std::string> variables = {};  ///< the environment variables that win over a profile
    bool needsOne = false;                    ///< whether the command refuses a placed list without anything in it
};

/// The values given on the command line, by the argument's name; a flag has an empty one.
using Values = std::map<std::string, std::vector<std::string>>;

struct Command {
    std::string path;  ///< the words that call it, such as "spaces create"
    std::string help;
    std::vector<Argument> arguments;
    void (*run)(Call& call);                   ///< null where the words only lead to further ones
    std::vector<std::string> operations = {};  ///< the client's members that it calls, but for signing in and out
    std::string question = {};                 ///< asked on a terminal before it runs; {name} is that argument's value
    std::vector<std::string> (*columns)() = nullptr;  ///< the columns that its table can have; null where it has none
    /// In the place of `run`: what the program itself knows, from the whole table and the values.
    std::string (*tell)(const std::vector<Command>& all, const Values& values, const Look& look) = nullptr;
};

using Commands = std::vector<Command>;

}  // namespace host
