#include "Support/MemoryDesktop.h"

#include <algorithm>
#include <ranges>
#include <utility>

namespace karto::testing {

std::int32_t MemoryDesktop::launch(std::optional<std::string> name) {
    const auto pid = static_cast<std::int32_t>(applications_.size() + 1);
    applications_.emplace_back().application = {.pid = pid, .name = std::move(name), .isRegular = true};
    return pid;
}

WindowHandle MemoryDesktop::open(std::int32_t pid, MemoryWindow window) {
    const WindowHandle handle{++opened_};
    reopen(handle, pid, std::move(window));
    return handle;
}

void MemoryDesktop::reopen(WindowHandle handle, std::int32_t pid, MemoryWindow window) {
    windows_.emplace(handle, std::move(window));
    application(pid).windows.push_back(handle);
}

void MemoryDesktop::close(WindowHandle window) {
    MemoryApplication& application = owner(window);
    std::erase(application.windows, window);
    if (application.focusedWindow == window) {
        application.focusedWindow.reset();
    }
    windows_.erase(window);
    closingObservers_.notify(window);
}

void MemoryDesktop::focus(WindowHandle window) {
    raise(window);
    activate(owner(window).application.pid);
}

MemoryApplication& MemoryDesktop::application(std::int32_t pid) { return *find(pid); }

MemoryWindow& MemoryDesktop::window(WindowHandle window) { return windows_.at(window); }

void MemoryDesktop::connect(std::vector<Screen> screens) {
    connected = std::move(screens);
    screenObservers_.notify();
}

std::vector<HotKey> MemoryDesktop::hotKeys() const {
    const auto values = std::views::values(hotKeys_);
    return {values.begin(), values.end()};
}

bool MemoryDesktop::press(Key key) {
    for (const HotKey& hotKey : hotKeys()) {
        if (Key{.code = hotKey.keyCode, .modifierMask = hotKey.modifierMask} == key) {
            pressHandlers_.notify(hotKey.id);
            return true;
        }
    }
    return false;
}

void MemoryDesktop::hold(ModifierFlags flags) {
    held_ = flags;
    modifierObservers_.notify(flags);
}

std::optional<std::int32_t> MemoryDesktop::frontmostApplication() { return frontmost; }

std::vector<Application> MemoryDesktop::runningApplications() {
    std::vector<Application> running;
    std::ranges::transform(applications_, std::back_inserter(running), &MemoryApplication::application);
    return running;
}

std::optional<WindowHandle> MemoryDesktop::focusedWindow(std::int32_t pid) {
    return application(pid).focusedWindow;
}

std::optional<std::vector<WindowHandle>> MemoryDesktop::windows(std::int32_t pid) {
    const MemoryApplication& application = this->application(pid);
    return application.areWindowsReadable ? std::optional(application.windows) : std::nullopt;
}

std::shared_ptr<const Image> MemoryDesktop::icon(std::int32_t pid) { return application(pid).icon; }

std::optional<Point> MemoryDesktop::position(WindowHandle window) {
    const auto* found = find(window);
    return found && found->isPositionReadable ? std::optional(found->frame.origin()) : std::nullopt;
}

std::optional<Size> MemoryDesktop::size(WindowHandle window) {
    const auto* found = find(window);
    return found && found->isSizeReadable ? std::optional(found->frame.size()) : std::nullopt;
}

bool MemoryDesktop::isPositionSettable(WindowHandle window) {
    const auto* found = find(window);
    return found && found->isPositionSettable;
}

bool MemoryDesktop::isSizeSettable(WindowHandle window) {
    const auto* found = find(window);
    return found && found->isSizeSettable;
}

void MemoryDesktop::setPosition(WindowHandle window, Point position) {
    auto* moved = movable(window);
    if (!moved || !moved->isPositionSettable) {
        return;
    }
    Rect& frame = moved->frame;
    if (moved->staysOnScreen) {
        const Rect screen = screenOf({position.x, position.y, 1, 1});
        position = {.x = std::max(screen.x, std::min(position.x, screen.maxX() - frame.width)),
                    .y = std::max(screen.y, std::min(position.y, screen.maxY() - frame.height))};
    }
    frame.x = position.x;
    frame.y = position.y;
}

void MemoryDesktop::setSize(WindowHandle window, Size size) {
    auto* resized = movable(window);
    if (!resized || !resized->isSizeSettable) {
        return;
    }
    Rect& frame = resized->frame;
    if (resized->staysOnScreen) {
        const Rect screen = screenOf(frame);
        size = {.width = std::min(size.width, screen.width), .height = std::min(size.height, screen.height)};
    }
    frame.width = std::max(size.width, resized->minimumSize.width);
    frame.height = std::max(size.height, resized->minimumSize.height);
}

std::optional<bool> MemoryDesktop::isStandard(WindowHandle window) {
    const auto* found = find(window);
    return found ? found->isStandard : std::nullopt;
}

std::optional<bool> MemoryDesktop::isMinimized(WindowHandle window) {
    const auto* found = find(window);
    return found ? found->isMinimized : std::nullopt;
}

std::optional<bool> MemoryDesktop::isFullscreen(WindowHandle window) {
    const auto* found = find(window);
    return found ? found->isFullscreen : std::nullopt;
}

std::optional<std::string> MemoryDesktop::title(WindowHandle window) {
    const auto* found = find(window);
    return found ? found->title : std::nullopt;
}

void MemoryDesktop::raise(WindowHandle window) {
    if (!find(window)) {
        return;
    }
    MemoryApplication& application = owner(window);
    std::erase(application.windows, window);
    application.windows.insert(application.windows.begin(), window);
    application.focusedWindow = window;
}

void MemoryDesktop::activate(std::int32_t pid) {
    if (find(pid)) {
        frontmost = pid;
    }
}

Registration MemoryDesktop::observeClosing(WindowHandle window, std::function<void()> onClosed) {
    return closingObservers_.add([window, onClosed = std::move(onClosed)](WindowHandle closed) {
        if (closed == window) {
            onClosed();
        }
    });
}

Registration MemoryDesktop::observeChanges(std::function<void()> onChange) {
    return screenObservers_.add(std::move(onChange));
}

Registration MemoryDesktop::installHandler(std::function<void(std::uint32_t)> onPress) {
    return deliversPresses ? pressHandlers_.add(std::move(onPress)) : Registration();
}

std::expected<Registration, HotKeyRefused> MemoryDesktop::registerHotKey(const HotKey& hotKey) {
    const auto isHeld = [&](const HotKey& other) {
        return other.keyCode == hotKey.keyCode && other.modifierMask == hotKey.modifierMask;
    };
    if (heldByOthers.contains({.code = hotKey.keyCode, .modifierMask = hotKey.modifierMask}) ||
        std::ranges::any_of(hotKeys(), isHeld)) {
        return std::unexpected(HotKeyRefused{});
    }
    const int key = claimed_++;
    hotKeys_.emplace(key, hotKey);
    return Registration([this, key] { hotKeys_.erase(key); });
}

Registration MemoryDesktop::observeKeyboardChanges(std::function<void()> onChange) {
    return keyboardObservers_.add(std::move(onChange));
}

Registration MemoryDesktop::observe(std::function<void(ModifierFlags)> onChange) {
    return modifierObservers_.add(std::move(onChange));
}

std::size_t MemoryDesktop::runAlert(const Alert& alert) {
    alerts.push_back(alert);
    return answer;
}

MemoryApplication* MemoryDesktop::find(std::int32_t pid) {
    const auto found = std::ranges::find_if(
        applications_, [=](const MemoryApplication& each) { return each.application.pid == pid; });
    return found == applications_.end() ? nullptr : &*found;
}

MemoryApplication& MemoryDesktop::owner(WindowHandle window) {
    return *std::ranges::find_if(applications_, [=](const MemoryApplication& application) {
        return std::ranges::find(application.windows, window) != application.windows.end();
    });
}

MemoryWindow* MemoryDesktop::find(WindowHandle window) {
    const auto found = windows_.find(window);
    return found == windows_.end() ? nullptr : &found->second;
}

MemoryWindow* MemoryDesktop::movable(WindowHandle window) {
    auto* const found = find(window);
    if (found && found->closesWhenMoved) {
        close(window);
        return nullptr;
    }
    return found && !found->isStubborn ? found : nullptr;
}

Rect MemoryDesktop::screenOf(const Rect& rect) const {
    return std::ranges::max(connected, {},
                            [&](const Screen& screen) { return overlapArea(rect, screen.frame); })
        .frame;
}

} // namespace karto::testing
