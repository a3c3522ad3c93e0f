#pragma once
// The monitors of the X server and what panels and the window manager leave of them.

#include "Karto/Platform/Observers.h"
#include "Karto/Platform/Scheduler.h"
#include "Karto/Platform/Screens.h"
#include "Karto/Platform/WeakCallbacks.h"
#include "Karto/Platform/X11/Displays/ScreenReading.h"
#include "Karto/Platform/X11/Server/Connection.h"

#include <chrono>
#include <map>
#include <optional>

namespace karto::x11 {

class Screens final : public karto::Screens {
public:
    Screens(Connection& connection, Scheduler& scheduler);

    // The last list that could be read and was not empty.
    std::vector<Screen> screens() override;

    [[nodiscard]] VerticalAxis verticalAxis() const override { return VerticalAxis::down; }

    Registration observeChanges(std::function<void()> onChange) override;

private:
    [[nodiscard]] bool concernsScreens(const xcb_generic_event_t& event) const;
    [[nodiscard]] bool concernsPanels(const xcb_generic_event_t& event) const;
    void readSoon(std::chrono::milliseconds delay);
    void readAgain();
    // True when there is a new one among them.
    bool watch(const std::vector<xcb_window_t>& panels);

    Connection& connection_;
    Scheduler& scheduler_;
    // Absent without RandR.
    std::optional<int> firstRandrEvent_;
    std::vector<Screen> screens_;
    AreaAtoms areaAtoms_;
    std::map<xcb_window_t, Registration> panels_;
    Observers<> observers_;
    Registration root_;
    Registration events_;
    Registration reading_;
    WeakCallbacks callbacks_;
};

} // namespace karto::x11
