// What the operating systems do differently. All text is UTF-8.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace host::system {

/// The arguments behind the program's name. Throws LocalProblem where one is no text.
std::vector<std::string> arguments(int argc, const char* const* argv);

/// The environment variable, empty where it is not set. Throws LocalProblem where it is no text.
std::string environment(const std::string& name);

/// The folder for the user's configuration of programs; empty where nothing names one.
std::string configFolder();

/// Lets the two output streams carry bytes as they are, and a console show them as UTF-8.
void prepareOutput();

/// Whether somebody looks at standard error as it is written.
bool errorIsTerminal();

/// The whole of a file that nobody but its owner can read, of a pipe, or of standard input where the path is "-".
/// Throws LocalProblem where a file is readable by others, it is neither file nor pipe, holds more than `limit` or
/// cannot be read; throws a Failure of status stopped where the user ends the wait.
std::string readPrivateFile(const std::string& path, std::size_t limit);

/// Replaces the file by one with this text that nobody but its owner can read; it is never half written.
/// Throws LocalProblem where that fails.
void writePrivateFile(const std::string& path, const std::string& text);

/// Shows `prompt` on standard error and returns the line that is then typed, which is not shown. Nothing where no
/// terminal is there to ask. Throws a Failure of status stopped where the user ends the wait.
std::optional<std::string> askSecret(const std::string& prompt);

/// Shows `prompt` on standard error and returns the line that is then typed at the terminal of standard input; what
/// there is of one where the input ends. Throws a Failure of status stopped where the user ends the wait.
std::string ask(const std::string& prompt);

/// While it lives, the first Ctrl-C or request to end calls `stop`, on a thread of its own, and ends the waits above;
/// the second one ends the program at once. There is one at a time.
class Interrupts {
public:
    explicit Interrupts(std::function<void()> stop);
    Interrupts(const Interrupts&) = delete;
    Interrupts& operator=(const Interrupts&) = delete;
    ~Interrupts();

private:
    class Watch;
    std::unique_ptr<Watch> watch_;
};

}  // namespace host::system
