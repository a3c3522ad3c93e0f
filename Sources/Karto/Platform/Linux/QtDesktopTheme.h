#pragma once
// The look of a Linux desktop: Qt's scale of the primary screen, and the accent colour that the desktop's
// portal or else its palette gives.

#include "Karto/Platform/DesktopTheme.h"
#include "Karto/Platform/Observers.h"

#include <memory>

namespace karto {

class PortalAccent;
class SessionBus;

class QtDesktopTheme final : public DesktopTheme {
public:
    // Requires Qt's application object.
    explicit QtDesktopTheme(SessionBus& bus);
    ~QtDesktopTheme() override;
    QtDesktopTheme(const QtDesktopTheme&) = delete;
    QtDesktopTheme(QtDesktopTheme&&) = delete;
    QtDesktopTheme& operator=(const QtDesktopTheme&) = delete;
    QtDesktopTheme& operator=(QtDesktopTheme&&) = delete;

    [[nodiscard]] double scale() const override { return look_.scale; }

    [[nodiscard]] RGBColor accent() const override { return look_.accent; }

    [[nodiscard]] Registration observeChanges(std::function<void()> onChange) override;

private:
    class Watch;

    struct Look {
        double scale = 1;
        RGBColor accent;

        bool operator==(const Look&) const = default;
    };

    [[nodiscard]] Look read() const;
    void update();

    std::unique_ptr<PortalAccent> portal_;
    std::unique_ptr<Watch> watch_;
    Look look_;
    Observers<> observers_;
};

} // namespace karto
