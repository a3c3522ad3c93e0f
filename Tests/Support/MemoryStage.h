#pragma once
// A stage in memory. Pictures are no more than the names that a test's painter gives them.

#include "Karto/Platform/ApplicationActivity.h"
#include "Karto/Platform/Observers.h"
#include "Karto/Platform/OverlayStage.h"

#include <list>
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
    Observers<Point> clicks;
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
