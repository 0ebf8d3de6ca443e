// What a subcommand is: a line in a table of its topic.
#pragma once

#include <string>
#include <vector>

namespace host {

class Call;

enum class Kind { text, number, seconds, flag, list };

/// "name" stands at a fixed place, "--name" anywhere. Placed ones must be given, the others may be; a placed list comes
/// last and takes all that follows, be it nothing.
struct Argument {
    std::string name;
    std::string help;
    Kind kind = Kind::text;
    std::vector<std::string> choices = {};  ///< the texts that are allowed; empty allows any
};

struct Command {
    std::string path;  ///< the words that call it, such as "spaces create"
    std::string help;
    std::vector<Argument> arguments;
    void (*run)(Call& call);                   ///< null where the words only lead to further ones
    std::vector<std::string> operations = {};  ///< the client's members that it calls, but for signing in and out
};

using Commands = std::vector<Command>;

}  // namespace host
