#include "service/http/Events.h"

namespace service::http {

void Events::add(const std::shared_ptr<Listener>& listener)
{
    const std::lock_guard lock(mutex_);
    forgetGone();
    listeners_.push_back(listener);
}

void Events::tell(const std::function<std::string()>& text)
{
    const std::lock_guard lock(mutex_);
    forgetGone();
    if (listeners_.empty()) return;
    const auto shared = std::make_shared<const std::string>(text());
    for (const std::weak_ptr<Listener>& known : listeners_) {
        if (const std::shared_ptr<Listener> listener = known.lock()) listener->hear(shared);
    }
}

std::size_t Events::count()
{
    const std::lock_guard lock(mutex_);
    forgetGone();
    return listeners_.size();
}

void Events::forgetGone()
{
    std::erase_if(listeners_, [](const std::weak_ptr<Listener>& listener) { return listener.expired(); });
}

}  // namespace service::http
