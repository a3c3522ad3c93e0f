#pragma once
// What a test types into the program's own windows.

#include "Karto/Platform/KeyEvents.h"

#include <map>
#include <memory>
#include <utility>

namespace karto::testing {

class MemoryKeyEvents final : public KeyEvents {
public:
    Registration observe(std::function<KeyEventAnswer(const KeyEvent&)> onEvent) override {
        monitor_ = std::make_shared<const Monitor>(std::move(onEvent));
        return Registration([this] { monitor_.reset(); });
    }

    // Both return whether a control of the window would see the event.
    bool press(std::optional<std::uint32_t> keyCode) {
        return send({.kind = KeyEvent::Kind::keyDown, .keyCode = keyCode, .modifiers = held_});
    }

    bool hold(ModifierFlags modifiers) {
        held_ = modifiers;
        return send({.kind = KeyEvent::Kind::modifiersChanged, .keyCode = {}, .modifiers = held_});
    }

    [[nodiscard]] bool isMonitored() const { return monitor_ != nullptr; }

private:
    using Monitor = std::function<KeyEventAnswer(const KeyEvent&)>;

    bool send(const KeyEvent& event) {
        const auto monitor = monitor_;
        return monitor == nullptr || (*monitor)(event) == KeyEventAnswer::passOn;
    }

    std::shared_ptr<const Monitor> monitor_;
    ModifierFlags held_;
};

} // namespace karto::testing
