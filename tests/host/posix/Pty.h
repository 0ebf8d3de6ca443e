// The program on a terminal that the test holds the other end of.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "tests/host/Program.h"

class Pty {
public:
    Pty(std::vector<std::string> words, const Environment& environment, unsigned short columns = 80);
    Pty(const Pty&) = delete;
    Pty& operator=(const Pty&) = delete;
    ~Pty();

    void type(const std::string& keys) const;
    void signal(int number) const;
    /// Reads until this has been shown; false where the program ends without.
    bool shows(const std::string& text);
    /// Whether the terminal shows what is typed.
    bool echoes() const;

    /// Waits for the end and returns the exit status, or the signal's number below zero.
    int end();
    /// All that was shown so far.
    const std::string& text() const { return text_; }

private:
    bool readMore();

    int terminal_ = -1;
    pid_t child_ = -1;
    std::string text_;
};
