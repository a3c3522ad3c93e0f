#pragma once
// An open file descriptor, closed with its owner.

#include <unistd.h>

#include <utility>

namespace karto {

class Descriptor {
public:
    // Takes over what open() and its like return; a negative number is no descriptor.
    explicit Descriptor(int number)
        : number_(number) {}

    Descriptor(Descriptor&& other) noexcept
        : number_(std::exchange(other.number_, -1)) {}

    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }

    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    ~Descriptor() {
        if (number_ >= 0) {
            ::close(number_);
        }
    }

    explicit operator bool() const { return number_ >= 0; }

    [[nodiscard]] int number() const { return number_; }

    // Whoever takes the number closes it.
    [[nodiscard]] int release() { return std::exchange(number_, -1); }

private:
    int number_;
};

} // namespace karto
