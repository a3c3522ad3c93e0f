#pragma once
// A desktop in memory: applications with their windows, screens, shortcuts, modifier keys and dialogs,
// together with the ways in which real ones misbehave.

#include "Karto/Adapters/KeyCodes.h"
#include "Karto/Platform/Accessibility.h"
#include "Karto/Platform/ApplicationHost.h"
#include "Karto/Platform/HotKeyCenter.h"
#include "Karto/Platform/ModifierEvents.h"
#include "Karto/Platform/Observers.h"
#include "Karto/Platform/Screens.h"

#include <compare>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace karto::testing {

// One without panels.
inline Screen screen(std::string name, const Rect& frame) {
    return {.name = std::move(name), .frame = frame, .visibleFrame = frame};
}

// An absent attribute cannot be read.
struct MemoryWindow {
    Rect frame;
    std::optional<std::string> title = "Untitled";
    std::optional<bool> isStandard = true;
    std::optional<bool> isMinimized = false;
    std::optional<bool> isFullscreen = false;
    bool isPositionReadable = true;
    bool isSizeReadable = true;
    bool isPositionSettable = true;
    bool isSizeSettable = true;
    Size minimumSize{.width = 1, .height = 1};
    // Says that it can be moved and resized, and stays as it is.
    bool isStubborn = false;
    // Closes when it is asked to move.
    bool closesWhenMoved = false;
    // Is kept within one screen, and no larger than the screen it is on.
    bool staysOnScreen = false;
};

struct MemoryApplication {
    Application application;
    // The topmost first.
    std::vector<WindowHandle> windows;
    std::optional<WindowHandle> focusedWindow;
    bool areWindowsReadable = true;
    std::shared_ptr<const Image> icon;
};

class MemoryDesktop final : public Accessibility,
                            public Screens,
                            public HotKeyCenter,
                            public ModifierEvents,
                            public ApplicationHost {
public:
    // Applications and windows. Regular applications get their process identifiers in order, from 1; a window
    // comes below the others of its application.
    std::int32_t launch(std::optional<std::string> name);
    WindowHandle open(std::int32_t pid, MemoryWindow window);
    // The same for a window that gets the handle of one that has closed.
    void reopen(WindowHandle handle, std::int32_t pid, MemoryWindow window);
    void close(WindowHandle window);
    // Brings the window's application to the front and gives the window its focus.
    void focus(WindowHandle window);
    MemoryApplication& application(std::int32_t pid);
    MemoryWindow& window(WindowHandle window);
    std::optional<std::int32_t> frontmost;
    // Why windows cannot be moved here; absent when they can.
    std::optional<TrustProblem> distrust;
    int settingsOpened = 0;

    // Screens. Changing `connected` alone goes unnoticed.
    std::vector<Screen> connected;
    VerticalAxis axis = VerticalAxis::down;
    void connect(std::vector<Screen> screens);

    // Shortcuts. A key with a modifier mask has one holder, this program or another one.
    struct Key {
        std::uint32_t code = 0;
        std::uint32_t modifierMask = 0x1B00;

        auto operator<=>(const Key&) const = default;
    };

    std::set<Key> heldByOthers;
    bool deliversPresses = true;
    // The program's own shortcuts, in the order of claiming.
    [[nodiscard]] std::vector<HotKey> hotKeys() const;
    // False when the key is not this program's.
    bool press(Key key);

    void changeKeyboard() { keyboardObservers_.notify(); }

    // Modifier keys.
    void hold(ModifierFlags flags);

    void holdUnreported(ModifierFlags flags) { held_ = flags; }

    // Dialogs and standard output.
    std::vector<Alert> alerts;
    std::size_t answer = 0;
    std::vector<std::string> printed;

    bool isTrusted() override { return !distrust; }

    bool requestTrust() override { return !distrust; }

    std::optional<TrustProblem> trustProblem() override { return distrust; }

    void openSettings() override { ++settingsOpened; }

    std::optional<std::int32_t> frontmostApplication() override;
    std::vector<Application> runningApplications() override;
    std::optional<WindowHandle> focusedWindow(std::int32_t pid) override;
    std::optional<std::vector<WindowHandle>> windows(std::int32_t pid) override;
    std::shared_ptr<const Image> icon(std::int32_t pid) override;
    std::optional<Point> position(WindowHandle window) override;
    std::optional<Size> size(WindowHandle window) override;
    bool isPositionSettable(WindowHandle window) override;
    bool isSizeSettable(WindowHandle window) override;
    void setPosition(WindowHandle window, Point position) override;
    void setSize(WindowHandle window, Size size) override;
    std::optional<bool> isStandard(WindowHandle window) override;
    std::optional<bool> isMinimized(WindowHandle window) override;
    std::optional<bool> isFullscreen(WindowHandle window) override;
    std::optional<std::string> title(WindowHandle window) override;
    void raise(WindowHandle window) override;
    void activate(std::int32_t pid) override;
    Registration observeClosing(WindowHandle window, std::function<void()> onClosed) override;

    std::vector<Screen> screens() override { return connected; }

    [[nodiscard]] VerticalAxis verticalAxis() const override { return axis; }

    Registration observeChanges(std::function<void()> onChange) override;
    Registration installHandler(std::function<void(std::uint32_t id)> onPress) override;
    std::expected<Registration, HotKeyRefused> registerHotKey(const HotKey& hotKey) override;
    Registration observeKeyboardChanges(std::function<void()> onChange) override;
    Registration observe(std::function<void(ModifierFlags)> onChange) override;

    ModifierFlags held() override { return held_; }

    std::size_t runAlert(const Alert& alert) override;

    void showAbout(const About& /*about*/) override {}

    void terminate() override { terminationObservers_.notify(); }

    void print(const std::string& text) override { printed.push_back(text); }

    void openFile(const std::string& /*path*/,
                  std::function<void(const std::string&)> /*onFailure*/) override {}

    Registration observeTermination(std::function<void()> onTermination) override {
        return terminationObservers_.add(std::move(onTermination));
    }

private:
    MemoryApplication* find(std::int32_t pid);
    MemoryApplication& owner(WindowHandle window);
    // Null for a window that has closed.
    MemoryWindow* find(WindowHandle window);
    // The window as far as a frame can be asked of it.
    MemoryWindow* movable(WindowHandle window);
    // The screen that a rectangle is on for the most part, else the first one.
    [[nodiscard]] Rect screenOf(const Rect& rect) const;

    std::vector<MemoryApplication> applications_;
    std::map<WindowHandle, MemoryWindow> windows_;
    std::uint32_t opened_ = 0;
    Observers<WindowHandle> closingObservers_;
    Observers<> screenObservers_;
    Observers<std::uint32_t> pressHandlers_;
    Observers<> keyboardObservers_;
    std::map<int, HotKey> hotKeys_;
    int claimed_ = 0;
    Observers<ModifierFlags> modifierObservers_;
    ModifierFlags held_;
    Observers<> terminationObservers_;
};

} // namespace karto::testing
