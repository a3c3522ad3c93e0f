#pragma once
// The callbacks that a double holds for its interface; they must end before it does.

#include "Karto/Platform/Registration.h"

#include <functional>
#include <map>
#include <utility>

namespace karto::testing {

template<typename... Arguments>
class Observers {
public:
    Registration add(std::function<void(Arguments...)> observer) {
        const int key = added_++;
        observers_.emplace(key, std::move(observer));
        return Registration([this, key] { observers_.erase(key); });
    }

    void notify(Arguments... arguments) const {
        // An observer may end its own registration.
        for (const auto& [key, observer] : std::map(observers_)) {
            observer(arguments...);
        }
    }

    [[nodiscard]] bool empty() const { return observers_.empty(); }

private:
    std::map<int, std::function<void(Arguments...)>> observers_;
    int added_ = 0;
};

} // namespace karto::testing
