#pragma once
// The callbacks registered for one kind of news.

#include "Karto/Platform/Registration.h"
#include "Karto/Platform/WeakCallbacks.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>

namespace karto {

template<typename... Arguments>
class Observers {
public:
    using Observer = std::function<void(const Arguments&...)>;

    // The registration may outlive this object.
    [[nodiscard]] Registration add(Observer observer) {
        const auto key = added_++;
        observers_.emplace(key, std::make_shared<const Observer>(std::move(observer)));
        return Registration(callbacks_.wrap([this, key] { observers_.erase(key); }));
    }

    // In the order of registration. An observer may end any registration meanwhile, its own included; one
    // that is added meanwhile hears the next news.
    void notify(const Arguments&... arguments) const {
        const auto end = added_;
        for (auto next = observers_.begin(); next != observers_.end() && next->first < end;) {
            const auto [key, observer] = *next;
            (*observer)(arguments...);
            next = observers_.upper_bound(key);
        }
    }

private:
    std::map<std::uint64_t, std::shared_ptr<const Observer>> observers_;
    std::uint64_t added_ = 0;
    WeakCallbacks callbacks_;
};

} // namespace karto
