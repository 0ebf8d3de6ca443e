#include "host/Terminal.h"

#include <windows.h>

#include "host/System.h"

namespace host::system {

namespace {

bool isConsole(DWORD stream)
{
    DWORD mode = 0;
    return ::GetConsoleMode(::GetStdHandle(stream), &mode) != 0;
}

}  // namespace

bool inputIsTerminal()
{
    return isConsole(STD_INPUT_HANDLE);
}

bool outputIsTerminal()
{
    return isConsole(STD_OUTPUT_HANDLE);
}

std::size_t terminalWidth()
{
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (!::GetConsoleScreenBufferInfo(::GetStdHandle(STD_OUTPUT_HANDLE), &info)) return 0;
    // A console begins a new line by itself once the last column is full.
    const int width = info.srWindow.Right - info.srWindow.Left;
    return width > 0 ? static_cast<std::size_t>(width) : 0;
}

bool prepareBold()
{
    const HANDLE output = ::GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0;
    if (environment("TERM") == "dumb" || !::GetConsoleMode(output, &mode)) return false;
    return ::SetConsoleMode(output, mode | ENABLE_PROCESSED_OUTPUT | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

}  // namespace host::system
