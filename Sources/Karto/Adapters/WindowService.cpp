#include "Karto/Adapters/WindowService.h"

#include "KartoCore/Membership.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace karto {

WindowService::WindowService(Accessibility& accessibility)
    : accessibility_(accessibility) {}

bool WindowService::isTrusted() const { return accessibility_.isTrusted(); }

bool WindowService::requestTrust() { return accessibility_.requestTrust(); }

std::optional<TrustProblem> WindowService::trustProblem() const { return accessibility_.trustProblem(); }

void WindowService::openAccessibilitySettings() { accessibility_.openSettings(); }

std::optional<WindowHandle> WindowService::focusedWindow() {
    const auto application = accessibility_.frontmostApplication();
    if (!application) {
        return std::nullopt;
    }
    if (const auto focused = accessibility_.focusedWindow(*application)) {
        return focused;
    }
    const auto windows = accessibility_.windows(*application);
    return windows && !windows->empty() ? std::optional(windows->front()) : std::nullopt;
}

std::optional<Rect> WindowService::frame(WindowHandle window) {
    const auto position = accessibility_.position(window);
    if (!position) {
        return std::nullopt;
    }
    const auto size = accessibility_.size(window);
    if (!size) {
        return std::nullopt;
    }
    return Rect{.x = position->x, .y = position->y, .width = size->width, .height = size->height};
}

void WindowService::setFrame(const Rect& frame, WindowHandle window) {
    if (!accessibility_.isPositionSettable(window) || !accessibility_.isSizeSettable(window)) {
        return;
    }
    // A desktop may keep a window on its display: smaller first, so that the position is free, and the size
    // once more where there is room for it.
    accessibility_.setSize(window, frame.size());
    accessibility_.setPosition(window, frame.origin());
    accessibility_.setSize(window, frame.size());
}

bool WindowService::isFullscreen(WindowHandle window) {
    return accessibility_.isFullscreen(window).value_or(false);
}

std::vector<WindowSnapshot> WindowService::windows(std::size_t displayIndex,
                                                   std::span<const Rect> displayFrames) {
    std::vector<WindowSnapshot> found;
    for (const Application& application : regularApplications()) {
        std::optional<std::shared_ptr<const Image>> icon;
        for (const WindowHandle window :
             accessibility_.windows(application.pid).value_or(std::vector<WindowHandle>{})) {
            const auto windowFrame = isOrdinary(window) ? frame(window) : std::nullopt;
            if (!windowFrame || Membership::holder(*windowFrame, displayFrames) != displayIndex) {
                continue;
            }
            auto title = accessibility_.title(window);
            if (title && title->empty()) {
                title.reset();
            }
            if (!icon) {
                icon = accessibility_.icon(application.pid);
            }
            found.push_back({.element = window,
                             .frame = *windowFrame,
                             .appName = application.name,
                             .title = std::move(title),
                             .icon = *icon,
                             .pid = application.pid});
        }
    }
    return found;
}

void WindowService::raise(const WindowSnapshot& window) {
    accessibility_.raise(window.element);
    accessibility_.activate(window.pid);
}

Registration WindowService::observeClosing(WindowHandle window, std::function<void()> onClosed) {
    return accessibility_.observeClosing(window, std::move(onClosed));
}

std::vector<Application> WindowService::regularApplications() {
    auto applications = accessibility_.runningApplications();
    std::erase_if(applications, [](const Application& application) { return !application.isRegular; });
    if (const auto frontmost = accessibility_.frontmostApplication()) {
        const auto first = std::ranges::find(applications, *frontmost, &Application::pid);
        if (first != applications.end()) {
            std::rotate(applications.begin(), first, std::next(first));
        }
    }
    return applications;
}

bool WindowService::isOrdinary(WindowHandle window) {
    return accessibility_.isStandard(window).value_or(false) &&
           !accessibility_.isMinimized(window).value_or(false) && !isFullscreen(window);
}

} // namespace karto
