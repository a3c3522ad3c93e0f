#include "Karto/Platform/X11/Stage/OverlayStage.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <ranges>
#include <tuple>
#include <utility>
#include <variant>

namespace karto::x11 {

namespace {

constexpr std::chrono::seconds lingerTime{10};
// Some pointers move a thousand times a second; half a picture's time is soon enough to hear of it, but for a
// drag, whose pictures take their time anyway.
constexpr std::chrono::milliseconds movementTime{8};

} // namespace

OverlayStage::OverlayStage(Connection& connection, WindowManager& manager, karto::ModifierEvents& modifiers,
                           DesktopTheme& theme, Scheduler& scheduler)
    : connection_(connection)
    , manager_(manager)
    , scheduler_(scheduler)
    , theme_(theme)
    , formats_(readRenderFormats(connection).value_or(RenderFormats()))
    , share_{.connection = connection,
             .images = ServerImages(connection, formats_.image),
             .cursors = Cursors(connection, [this] { showCursors(); }),
             .format = formats_.opaque,
             .held = modifiers.held()}
    , order_(
          connection, manager, scheduler,
          [this](WindowHandle above, const std::vector<PixelRect>& areas) { cutOut(above, areas); },
          [this] { showAnew(); })
    , themeChanges_(theme.observeChanges([this] { styleObservers_.notify(); }))
    // The server tells of them and of the pointer in one order.
    , modifierChanges_(modifiers.observe([this](ModifierFlags held) { share_.held = held; })) {
    if (formats_ == RenderFormats()) {
        return;
    }
    compositor_ =
        std::make_unique<SelectionOwner>(connection, "_NET_WM_CM_S", [this] { followCompositor(); });
    chooseFormat();
    events_ = connection.observe([this](const xcb_generic_event_t& event) { handle(event); });
    lulls_ = connection.observeLulls([this] { tellMovements(); });
}

void OverlayStage::handle(const xcb_generic_event_t& event) {
    // The window that it was one of may be gone then, and others may have come.
    std::ignore = std::ranges::any_of(windows_, [&](auto* window) { return window->handle(event); });
}

void OverlayStage::showCursors() {
    for (auto* window : windows_) {
        window->showCursor();
    }
}

void OverlayStage::tellMovements() {
    const auto waiting = [this] {
        return std::ranges::find_if(windows_, &BorderlessWindow::isMovementWaiting);
    };
    std::optional<PointerAction> told;
    for (auto next = waiting(); next != windows_.end(); next = waiting()) {
        told = (*next)->tellMovement();
    }
    if (told && told != PointerAction::dragged) {
        connection_.gather(movementTime);
    }
}

std::unique_ptr<karto::BorderlessWindow> OverlayStage::createWindow(const Rect& frame) {
    auto window = std::make_unique<BorderlessWindow>(share_, frame);
    windows_.push_back(window.get());
    window->keep(Registration(callbacks_.wrap([this, gone = window.get()] { std::erase(windows_, gone); })));
    return window;
}

void OverlayStage::present() {
    if (!compositor_) {
        return;
    }
    for (auto* window : windows_) {
        window->build();
    }
    auto wanted = wantedOrder();
    // It is kept without being asked for, which takes its time.
    const bool isReordered = share_.turns != turns_ || wanted != wanted_;
    if (isReordered) {
        turns_ = share_.turns;
        wanted_ = wanted;
        order_.want(std::move(wanted));
    }
    // Nobody, the compositor least of all, is to see some of it without the rest.
    xcb_grab_server(connection_.get());
    // Those that wait out of sight get their place in the order before they come: one compositor paints them
    // in front of everything otherwise, and does not always make up for it.
    if (isReordered) {
        order_.restack();
    }
    for (auto* window : windows_) {
        window->arrange();
    }
    for (auto* window : windows_) {
        window->show();
    }
    for (auto* window : windows_) {
        window->paint();
    }
    xcb_ungrab_server(connection_.get());
    connection_.flush();
    retireLater();
}

void OverlayStage::retireLater() {
    const bool isAnyReady = std::ranges::any_of(windows_, &BorderlessWindow::isReady);
    retiring_ =
        isAnyReady ? scheduler_.after(lingerTime, callbacks_.wrap([this] { retire(); })) : Registration();
}

void OverlayStage::retire() {
    for (auto* window : windows_) {
        window->retire();
    }
    present();
}

std::vector<BorderlessWindow*> OverlayStage::windowsInFront() const {
    using InFront = BorderlessWindow::InFront;
    std::vector<BorderlessWindow*> inFront;
    std::ranges::copy_if(windows_, std::back_inserter(inFront), [](const auto* window) {
        return std::holds_alternative<InFront>(window->standing());
    });
    std::ranges::sort(inFront, std::greater(), [](const auto* window) {
        return std::pair(window->level(), std::get<InFront>(window->standing()).turn);
    });
    return inFront;
}

StageOrder::Wanted OverlayStage::wantedOrder() const {
    StageOrder::Wanted wanted{.front = {}, .below = {}, .isComposited = isComposited()};
    for (const auto* window : windows_) {
        if (const auto* below = std::get_if<BorderlessWindow::Below>(&window->standing())) {
            auto& group = wanted.below[below->window];
            std::ranges::copy(window->windows(), std::back_inserter(group));
        }
    }
    for (const auto* window : windowsInFront()) {
        std::ranges::copy(window->windows(), std::back_inserter(wanted.front));
    }
    return wanted;
}

void OverlayStage::showAnew() {
    xcb_grab_server(connection_.get());
    for (auto* window : windowsInFront() | std::views::reverse) {
        window->showAnew();
    }
    xcb_ungrab_server(connection_.get());
    connection_.flush();
}

void OverlayStage::cutOut(WindowHandle above, const std::vector<PixelRect>& areas) {
    for (auto* window : windows_) {
        const auto* below = std::get_if<BorderlessWindow::Below>(&window->standing());
        if (below != nullptr && below->window == above) {
            window->cutOut(areas);
        }
    }
}

StageStyle OverlayStage::style() const {
    return {.scale = theme_.scale(), .accent = theme_.accent(), .isTranslucent = share_.isTranslucent};
}

Registration OverlayStage::observeStyleChanges(std::function<void()> onChange) {
    return styleObservers_.add(std::move(onChange));
}

void OverlayStage::chooseFormat() {
    share_.isTranslucent = isComposited() && formats_.translucent.has_value();
    // One that waits would come back below whatever was shown meanwhile.
    share_.mayWait = share_.isTranslucent && !manager_.paintsByAge();
    share_.format = share_.isTranslucent ? formats_.translucent.value_or(formats_.opaque) : formats_.opaque;
}

void OverlayStage::followCompositor() {
    const bool before = share_.isTranslucent;
    chooseFormat();
    if (share_.isTranslucent == before) {
        return;
    }
    for (auto* window : windows_) {
        window->rebuild();
    }
    // Whoever paints for the stage brings new pictures now; the windows are back in any case.
    styleObservers_.notify();
    present();
}

} // namespace karto::x11
