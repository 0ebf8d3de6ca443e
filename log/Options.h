// What the command line asks for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace logreader {

struct Options {
    std::string file;  ///< "-": standard input; empty: the library's own log
    std::uint64_t call = 0;
    std::string operation;
    std::string since;
    std::string until;
    bool expand = false;
    bool failed = false;
    bool follow = false;
    bool json = false;
    bool showSecrets = false;
    std::string help;  ///< to be printed in the place of everything else
};

/// The help fits into so many columns, 0 for any number. Throws Problem where the words make no sense.
Options readOptions(std::vector<std::string> words, std::size_t columns);

}  // namespace logreader
