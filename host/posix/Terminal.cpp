#include "host/Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include "host/System.h"

namespace host::system {

bool inputIsTerminal()
{
    return ::isatty(STDIN_FILENO) == 1;
}

bool outputIsTerminal()
{
    return ::isatty(STDOUT_FILENO) == 1;
}

std::size_t terminalWidth()
{
    winsize size{};
    return ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

bool prepareBold()
{
    return environment("TERM") != "dumb";
}

}  // namespace host::system
