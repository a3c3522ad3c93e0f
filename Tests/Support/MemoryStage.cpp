#include "Support/MemoryStage.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace karto::testing {

namespace {

std::string nameOf(const Picture& picture) {
    std::string name;
    for (const PictureTile& tile : picture.tiles) {
        std::ranges::transform(tile.image->pixels, std::back_inserter(name),
                               [](std::uint32_t pixel) { return static_cast<char>(pixel); });
    }
    return name;
}

} // namespace

Picture pictureNamed(std::string_view name) {
    const auto image = std::make_shared<const Image>(Image{.pixels = {name.begin(), name.end()}});
    return {.tiles = {{.image = image, .area = {}}}};
}

void MemoryStageWindow::tell(PointerAction action, Point place, ModifierFlags held) {
    const bool isFarewell = action == PointerAction::left || action == PointerAction::cancelled;
    if (!isFarewell && (!isVisible || ignoresMouse)) {
        return;
    }
    pointer = action == PointerAction::left ? std::nullopt : std::optional(place);
    const auto observers = pointerEvents;
    observers->notify({.action = action, .place = place, .held = held});
}

class MemoryStage::Window final : public BorderlessWindow {
public:
    Window(MemoryStage& stage, const Rect& frame)
        : stage_(stage)
        , self_(stage.windows.emplace(stage.windows.end())) {
        self_->frame = frame;
        ++stage_.windowsCreated;
    }

    Window(const Window&) = delete;
    Window(Window&&) = delete;
    Window& operator=(const Window&) = delete;
    Window& operator=(Window&&) = delete;

    ~Window() override { stage_.windows.erase(self_); }

    void setFrame(const Rect& frame) override { self_->frame = frame; }

    void setLevel(StageLevel level) override { self_->level = level; }

    void setIgnoresMouse(bool ignoresMouse) override { self_->ignoresMouse = ignoresMouse; }

    void setPicture(Picture picture) override {
        self_->picture = nameOf(picture);
        ++self_->timesPainted;
    }

    void prepare() override { self_->isPrepared = true; }

    void orderFront() override {
        self_->isVisible = true;
        self_->below.reset();
    }

    void orderBelow(WindowHandle window) override {
        self_->isVisible = true;
        self_->below = window;
    }

    void orderOut() override { self_->isVisible = false; }

    void setCursor(Cursor cursor) override { self_->cursor = cursor; }

    Registration observePointer(std::function<void(const PointerEvent&)> onPointer) override {
        return self_->pointerEvents->add(std::move(onPointer));
    }

    std::optional<Point> pointer() override {
        return self_->isVisible && !self_->ignoresMouse ? self_->pointer : std::nullopt;
    }

private:
    MemoryStage& stage_;
    std::list<MemoryStageWindow>::iterator self_;
};

void MemoryStage::restyle(const StageStyle& style) {
    style_ = style;
    styleObservers_.notify();
}

void MemoryStage::setActive(bool isActive) {
    isActive_ = isActive;
    activityObservers_.notify(isActive);
}

void MemoryStage::present() {
    shown_.clear();
    for (const MemoryStageWindow& window : windows) {
        if (window.isVisible) {
            shown_.push_back(window.picture);
        }
    }
}

std::unique_ptr<BorderlessWindow> MemoryStage::createWindow(const Rect& frame) {
    return std::make_unique<Window>(*this, frame);
}

Registration MemoryStage::observeStyleChanges(std::function<void()> onChange) {
    return styleObservers_.add(std::move(onChange));
}

Registration MemoryStage::observe(std::function<void(bool isActive)> onChange) {
    return activityObservers_.add(std::move(onChange));
}

} // namespace karto::testing
