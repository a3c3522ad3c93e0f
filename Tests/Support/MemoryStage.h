#pragma once
// A stage in memory. Pictures are no more than the names that a test's painter gives them.

#include "Karto/Platform/ApplicationActivity.h"
#include "Karto/Platform/Observers.h"
#include "Karto/Platform/OverlayStage.h"

#include <list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace karto::testing {

// A picture of no size with a name in place of its pixels.
Picture pictureNamed(std::string_view name);

struct MemoryStageWindow {
    Rect frame;
    StageLevel level = StageLevel::floating;
    bool ignoresMouse = true;
    std::string picture;
    int timesPainted = 0;
    bool isPrepared = false;
    bool isVisible = false;
    std::optional<WindowHandle> below;
    Cursor cursor = Cursor::arrow;
    // Where the pointer is in the window; absent while it is elsewhere.
    std::optional<Point> pointer;
    // Outlives the window while it tells of the pointer.
    std::shared_ptr<Observers<PointerEvent>> pointerEvents = std::make_shared<Observers<PointerEvent>>();

    // What a person does with the pointer, in pixels from the window's top left corner. The window hears
    // nothing while it is hidden or ignores the mouse.
    void move(Point place, ModifierFlags held = {}) { tell(PointerAction::moved, place, held); }

    void press(Point place, ModifierFlags held = {}) { tell(PointerAction::pressed, place, held); }

    void drag(Point place, ModifierFlags held = {}) { tell(PointerAction::dragged, place, held); }

    void release(Point place, ModifierFlags held = {}) { tell(PointerAction::released, place, held); }

    void leave() { tell(PointerAction::left, pointer.value_or(Point()), {}); }

    // Something takes the gesture away, hiding the window for one.
    void cancel() { tell(PointerAction::cancelled, pointer.value_or(Point()), {}); }

private:
    void tell(PointerAction action, Point place, ModifierFlags held);
};

class MemoryStage final : public OverlayStage, public ApplicationActivity {
public:
    // The windows that exist, in the order of creation.
    std::list<MemoryStageWindow> windows;
    int windowsCreated = 0;
    void restyle(const StageStyle& style);
    void setActive(bool isActive);

    // The pictures of the windows that were visible when the stage was last presented, in the order of
    // creation.
    [[nodiscard]] const std::vector<std::string>& shown() const { return shown_; }

    std::unique_ptr<BorderlessWindow> createWindow(const Rect& frame) override;

    void present() override;

    [[nodiscard]] StageStyle style() const override { return style_; }

    Registration observeStyleChanges(std::function<void()> onChange) override;

    [[nodiscard]] bool isActive() const override { return isActive_; }

    Registration observe(std::function<void(bool isActive)> onChange) override;

private:
    class Window;

    std::vector<std::string> shown_;
    StageStyle style_;
    bool isActive_ = false;
    Observers<> styleObservers_;
    Observers<bool> activityObservers_;
};

} // namespace karto::testing
