#pragma once
// What is typed into the program's own windows, heard before the toolkit hands it to their controls.

#include "Karto/Platform/KeyEvents.h"

#include <memory>

namespace karto {

class QtKeyEvents final : public KeyEvents {
public:
    // The program's code of a key by the server's; absent for a key that has none.
    using ProgramKeyCode = std::function<std::optional<std::uint32_t>(std::uint32_t serverKeyCode)>;

    // Requires a QApplication that outlives it.
    QtKeyEvents(ModifierEvents& modifiers, ProgramKeyCode programKeyCode);
    QtKeyEvents(const QtKeyEvents&) = delete;
    QtKeyEvents(QtKeyEvents&&) = delete;
    QtKeyEvents& operator=(const QtKeyEvents&) = delete;
    QtKeyEvents& operator=(QtKeyEvents&&) = delete;
    ~QtKeyEvents() override;

    Registration observe(std::function<KeyEventAnswer(const KeyEvent&)> onEvent) override;

private:
    class Filter;

    ModifierEvents& modifiers_;
    // Outlives a registration that ends while an event is handled.
    std::shared_ptr<Filter> filter_;
};

} // namespace karto
