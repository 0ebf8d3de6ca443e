#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace service::http {

// What happens, told to everybody who listens, by any thread. Listeners come and go with their connections.
class Events {
public:
    class Listener {
    public:
        virtual ~Listener() = default;
        virtual void hear(const std::shared_ptr<const std::string>& text) = 0;
    };

    void add(const std::shared_ptr<Listener>& listener);

    // The text is made only where somebody listens.
    void tell(const std::function<std::string()>& text);

    // How many listen.
    std::size_t count();

private:
    void forgetGone();

    std::mutex mutex_;
    std::vector<std::weak_ptr<Listener>> listeners_;
};

}  // namespace service::http
