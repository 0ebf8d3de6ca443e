#include "pvutil/posix/ThreadLoop.h"

#include <pthread.h>
#include <sys/epoll.h>

#include <algorithm>
#include <atomic>
#include <type_traits>

#include "pvutil/MessageLoop.h"

namespace kzn::pvutil {

namespace {

// How a thread holds its loop. All of them stand in one list, so that unloading the library frees those of threads that
// go on living.
struct Anchor {
    std::shared_ptr<ThreadLoop> loop;
    Anchor* next = nullptr;
};

static_assert(std::is_trivially_destructible_v<std::mutex>);
constinit std::mutex g_mutex;
constinit Anchor* g_first = nullptr;
constinit pthread_key_t g_key{};
constinit std::atomic<bool> g_hasKey = false;

void unlinkAndFree(void* anchor) noexcept
{
    std::unique_ptr<Anchor> freed;
    const std::lock_guard lock(g_mutex);
    for (Anchor** link = &g_first; *link != nullptr; link = &(*link)->next) {
        if (*link != anchor) continue;
        freed.reset(*link);
        *link = freed->next;
        return;
    }
}

bool makeKey() noexcept
{
    const std::lock_guard lock(g_mutex);
    if (!g_hasKey && pthread_key_create(&g_key, unlinkAndFree) == 0) g_hasKey = true;
    return g_hasKey;
}

}  // namespace

std::shared_ptr<ThreadLoop> ThreadLoop::standing() noexcept
{
    const void* const anchor = g_hasKey ? pthread_getspecific(g_key) : nullptr;
    return anchor == nullptr ? nullptr : static_cast<const Anchor*>(anchor)->loop;
}

std::shared_ptr<ThreadLoop> ThreadLoop::ofThisThread()
{
    if (auto loop = standing()) return loop;
    Descriptor epoll(epoll_create1(EPOLL_CLOEXEC));
    if (!epoll || !makeKey()) return nullptr;
    auto anchor = std::make_unique<Anchor>();
    anchor->loop = std::make_shared<ThreadLoop>(std::move(epoll));
    if (pthread_setspecific(g_key, anchor.get()) != 0) return nullptr;
    auto loop = anchor->loop;
    const std::lock_guard lock(g_mutex);
    anchor->next = g_first;
    g_first = anchor.release();
    return loop;
}

void ThreadLoop::shutDown() noexcept
{
    Anchor* first = nullptr;
    {
        const std::lock_guard lock(g_mutex);
        if (g_hasKey.exchange(false)) pthread_key_delete(g_key);
        first = std::exchange(g_first, nullptr);
    }
    while (first != nullptr) first = std::unique_ptr<Anchor>(first)->next;
}

std::uint64_t ThreadLoop::add(const std::shared_ptr<SystemWindow>& window, int timer)
{
    const std::lock_guard lock(mutex_);
    windows_.emplace_back(last_ + 1, window);
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.u64 = last_ + 1;
    if (epoll_ctl(epoll_.get(), EPOLL_CTL_ADD, timer, &event) == 0) return ++last_;
    windows_.pop_back();
    return 0;
}

void ThreadLoop::remove(std::uint64_t number, int timer) noexcept
{
    const std::lock_guard lock(mutex_);
    epoll_ctl(epoll_.get(), EPOLL_CTL_DEL, timer, nullptr);
    std::erase_if(windows_, [number](const auto& each) { return each.first == number; });
}

// An event names its window by number and not by address: the tick before it may have destroyed that window.
std::shared_ptr<SystemWindow> ThreadLoop::find(std::uint64_t number)
{
    const std::lock_guard lock(mutex_);
    const auto found =
        std::find_if(windows_.begin(), windows_.end(), [number](const auto& each) { return each.first == number; });
    return found == windows_.end() ? nullptr : found->second.lock();
}

int ThreadLoop::dispatch()
{
    std::vector<epoll_event> events;
    {
        const std::lock_guard lock(mutex_);
        events.resize(windows_.size());
    }
    if (events.empty()) return 0;
    const int count = epoll_wait(epoll_.get(), events.data(), static_cast<int>(events.size()), 0);
    events.resize(static_cast<std::size_t>(std::max(count, 0)));
    int delivered = 0;
    for (const auto& event : events)
        if (const auto window = find(event.data.u64); window && deliverDue(*window)) ++delivered;
    return delivered;
}

int MessageLoopFd()
try {
    const auto loop = ThreadLoop::ofThisThread();
    return loop ? loop->descriptor() : -1;
} catch (...) {
    return -1;
}

int DispatchPendingMessages()
try {
    const auto loop = ThreadLoop::standing();
    return loop ? loop->dispatch() : 0;
} catch (...) {
    return 0;
}

}  // namespace kzn::pvutil
