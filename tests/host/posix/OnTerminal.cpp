#include "tests/host/posix/OnTerminal.h"

#include "tests/host/posix/Pty.h"

Ended onTerminal(std::vector<std::string> words, const Environment& environment, const std::string& typed,
                 unsigned short columns)
{
    Pty terminal(std::move(words), environment, columns);
    if (!typed.empty()) terminal.type(typed);
    Ended ended;
    ended.status = terminal.end();
    ended.out = terminal.text();
    return ended;
}
