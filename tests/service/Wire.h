#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>

namespace service::test {

enum class Ended { open, closed, reset };

struct Heard {
    std::string bytes;
    Ended ended = Ended::open;
    std::chrono::milliseconds time{0};
};

struct Socket;

// One connection, read for as long as the test says.
class Wire {
public:
    explicit Wire(unsigned short port);
    ~Wire();
    Wire(const Wire&) = delete;
    Wire& operator=(const Wire&) = delete;

    void send(const std::string& body);

    // Until the connection ends, so many bytes are there, or they end with this; a while without anything ends it too.
    Heard hear(const std::string& until = {}, std::size_t most = 64UL * 1024 * 1024);

    // Nothing comes for that long, and the connection does not end.
    bool isQuiet(std::chrono::milliseconds time);

private:
    // What was begun on the connection goes on for that long, and is given up then.
    void runFor(std::chrono::milliseconds time);

    unsigned short port_;
    std::unique_ptr<Socket> connection_;
};

}  // namespace service::test
