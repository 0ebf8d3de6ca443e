#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <cstdio>

#include "host/Encoding.h"
#include "host/Errors.h"
#include "host/System.h"
#include "host/posix/Interrupts.h"

namespace host::system {

namespace {

/// The terminal of the session, whatever the standard streams are.
class Terminal {
public:
    Terminal() : file_(::open("/dev/tty", O_RDONLY | O_CLOEXEC | O_NOCTTY)) {}
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    ~Terminal()
    {
        if (silenced_) ::tcsetattr(file_, TCSAFLUSH, &before_);
        if (file_ >= 0) ::close(file_);
    }

    /// False where there is no terminal.
    bool silence()
    {
        if (file_ < 0 || ::tcgetattr(file_, &before_) != 0) return false;
        termios silent = before_;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        silenced_ = ::tcsetattr(file_, TCSAFLUSH, &silent) == 0;
        return silenced_;
    }

    int file() const { return file_; }

private:
    int file_;
    termios before_{};
    bool silenced_ = false;
};

/// The line has yet to end unless what is typed is shown, its end too.
class Prompt {
public:
    explicit Prompt(const std::string& text) { std::fputs(text.c_str(), stderr); }
    Prompt(const Prompt&) = delete;
    Prompt& operator=(const Prompt&) = delete;
    ~Prompt()
    {
        if (isOpen_) std::fputs("\n", stderr);
    }

    void close() { isOpen_ = false; }

private:
    bool isOpen_ = true;
};

/// Appends what is typed; false where the input ends before the line does.
bool readLine(int file, std::string& line)
{
    for (char c = 0;; line.push_back(c)) {
        waitForInput(file);
        if (::read(file, &c, 1) != 1) return false;
        if (c == '\n') return true;
    }
}

}  // namespace

bool errorIsTerminal()
{
    return ::isatty(STDERR_FILENO) == 1;
}

std::optional<std::string> askSecret(const std::string& prompt)
{
    Terminal terminal;
    if (!errorIsTerminal() || !terminal.silence()) return std::nullopt;
    const Prompt shown(prompt);
    std::string secret;
    readLine(terminal.file(), secret);
    if (!isUtf8(secret)) throw LocalProblem("what was typed is not UTF-8");
    return secret;
}

std::string ask(const std::string& prompt)
{
    Prompt shown(prompt);
    std::string answer;
    if (readLine(STDIN_FILENO, answer)) shown.close();
    return answer;
}

}  // namespace host::system
