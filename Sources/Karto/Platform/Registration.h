#pragma once
// What a registration with an interface returns: it lasts as long as this object.

#include <functional>
#include <utility>

namespace karto {

class Registration {
public:
    Registration() = default;

    explicit Registration(std::function<void()> unregister)
        : unregister_(std::move(unregister)) {}

    Registration(Registration&& other) noexcept
        : unregister_(std::exchange(other.unregister_, nullptr)) {}

    Registration& operator=(Registration&& other) noexcept {
        if (this != &other) {
            reset();
            unregister_ = std::exchange(other.unregister_, nullptr);
        }
        return *this;
    }

    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;

    ~Registration() { reset(); }

    // Ends the registration; nothing when it has ended.
    void reset() {
        if (const auto unregister = std::exchange(unregister_, nullptr)) {
            unregister();
        }
    }

    // True while the registration lasts.
    explicit operator bool() const { return unregister_ != nullptr; }

private:
    std::function<void()> unregister_;
};

} // namespace karto
