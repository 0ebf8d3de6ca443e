#include "host/posix/Interrupts.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <thread>

#include "host/Errors.h"
#include "host/System.h"

namespace host::system {

namespace {

constexpr std::array kSignals{SIGINT, SIGTERM, SIGHUP};

constinit std::atomic<int> g_signals = 0;
static_assert(std::atomic<int>::is_always_lock_free, "a handler may touch nothing that waits");

// Readable once the user has had enough; -1 while nobody watches.
constinit std::atomic<int> g_stopped = -1;

/// A terminal that closes may say so twice, by the system and by the shell: nobody has lost patience then.
extern "C" void count(int number)
{
    if (number != SIGHUP || g_signals == 0) ++g_signals;
}

class Pipe {
public:
    Pipe()
    {
        if (::pipe2(ends_.data(), O_CLOEXEC) != 0) throw LocalProblem("this machine has no descriptor left");
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe()
    {
        for (const int end : ends_) ::close(end);
    }

    int reader() const { return ends_[0]; }
    void signal() const
    {
        while (::write(ends_[1], "", 1) < 0 && errno == EINTR) {
        }
    }

private:
    std::array<int, 2> ends_{};
};

}  // namespace

/// The signals reach the watching thread alone: nothing else in the program is ever interrupted by them.
class Interrupts::Watch {
public:
    explicit Watch(std::function<void()> stop) : stop_(std::move(stop))
    {
        ::sigset_t watched;
        ::sigemptyset(&watched);
        for (const int number : kSignals) ::sigaddset(&watched, number);
        ::pthread_sigmask(SIG_BLOCK, &watched, &mask_);
        for (std::size_t at = 0; at < kSignals.size(); ++at) take(at);
        g_signals = 0;
        g_stopped = stopped_.reader();
        thread_ = std::thread([this] { watch(); });
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
    ~Watch()
    {
        over_.signal();
        thread_.join();
        g_stopped = -1;
        for (std::size_t at = 0; at < kSignals.size(); ++at) ::sigaction(kSignals[at], &before_[at], nullptr);
        ::pthread_sigmask(SIG_SETMASK, &mask_, nullptr);
    }

private:
    /// Whoever started the program may have had it ignore a signal, which then stays ignored.
    void take(std::size_t at)
    {
        struct sigaction action {};
        action.sa_handler = count;
        ::sigaction(kSignals[at], nullptr, &before_[at]);
        if (before_[at].sa_handler != SIG_IGN) ::sigaction(kSignals[at], &action, nullptr);
    }

    void watch()
    {
        ::sigset_t open = mask_;
        for (const int number : kSignals) ::sigdelset(&open, number);
        pollfd over{over_.reader(), POLLIN, 0};
        for (int seen = 0; ::ppoll(&over, 1, nullptr, &open) < 0;) {
            const int now = g_signals;
            if (now > 1) ::_exit(static_cast<int>(Status::stopped));
            if (now > seen) {
                stopped_.signal();
                stop_();
            }
            seen = now;
        }
    }

    std::function<void()> stop_;
    Pipe over_;
    Pipe stopped_;
    ::sigset_t mask_{};
    std::array<struct sigaction, kSignals.size()> before_{};
    std::thread thread_;
};

Interrupts::Interrupts(std::function<void()> stop) : watch_(std::make_unique<Watch>(std::move(stop))) {}

Interrupts::~Interrupts() = default;

void waitForInput(int file)
{
    std::array<pollfd, 2> watched{{{file, POLLIN, 0}, {g_stopped, POLLIN, 0}}};
    while (::poll(watched.data(), watched.size(), -1) < 0 && errno == EINTR) {
    }
    if (watched[1].revents != 0) throw Failure(Status::stopped, "stopped");
}

}  // namespace host::system
