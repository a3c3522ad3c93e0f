#pragma once
// Callbacks that do nothing once their owner is gone. The owner holds one WeakCallbacks as its last member
// and wraps every function that it hands out.

#include <memory>
#include <utility>

namespace karto {

class WeakCallbacks {
public:
    template<typename Function>
    [[nodiscard]] auto wrap(Function function) const {
        return
            [alive = std::weak_ptr<const char>(alive_), function = std::move(function)](auto&&... arguments) {
                if (!alive.expired()) {
                    function(std::forward<decltype(arguments)>(arguments)...);
                }
            };
    }

private:
    std::shared_ptr<const char> alive_ = std::make_shared<const char>();
};

} // namespace karto
