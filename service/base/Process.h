#pragma once

#include <boost/asio/io_context.hpp>
#include <memory>
#include <string>
#include <vector>

// How the service meets the one who started it; posix/ and win32/ have it, each in its own way.
namespace service {

// The words of the command line, the program's own first, in UTF-8.
std::vector<std::string> arguments(int argc, const char* const* argv);

// Lines end alike and are UTF-8 everywhere, and a reader that has gone ends a write, not the process.
void prepareStreams();

long long processID();

// Before there are threads: what is large goes back to the system as soon as it is free, and so does most of what lies
// at the end of a heap. The C library alone would take the largest piece that it has seen for an ordinary one.
void prepareMemory();

// Gives the system back what was in use and no longer is; the C library alone would keep most of it. Takes a while.
void returnMemory();

// From now on this process is asked to end as soon as the one that started it has ended. Where that has happened
// already it throws std::runtime_error.
void endWithParent();

// Stops the context when the process is asked to end, for as long as this lives.
class StopOnRequest {
public:
    explicit StopOnRequest(boost::asio::io_context& io);
    ~StopOnRequest();
    StopOnRequest(const StopOnRequest&) = delete;
    StopOnRequest& operator=(const StopOnRequest&) = delete;

private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace service
