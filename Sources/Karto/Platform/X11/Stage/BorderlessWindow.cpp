#include "Karto/Platform/X11/Stage/BorderlessWindow.h"

#include "Karto/Platform/X11/Stage/PaintPlan.h"
#include "Karto/Platform/X11/Stage/PictureDamage.h"
#include "KartoCore/PixelArea.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace karto::x11 {

namespace {

PixelRect pixelArea(const Rect& frame) {
    // The server knows no window without an area.
    auto area = nearestPixels(frame);
    area.width = std::max(area.width, 1);
    area.height = std::max(area.height, 1);
    return area;
}

} // namespace

BorderlessWindow::BorderlessWindow(StageShare& share, const Rect& frame)
    : share_(share)
    , area_(pixelArea(frame)) {}

void BorderlessWindow::setFrame(const Rect& frame) {
    const auto area = pixelArea(frame);
    if (area == area_) {
        return;
    }
    const bool isResized = area.width != area_.width || area.height != area_.height;
    area_ = area;
    ++share_.turns;
    isPlanned_ = isPlanned_ && !isResized;
    isPainted_ = isPainted_ && !isResized;
    isShaped_ = isShaped_ && !isResized && cuts_.empty();
}

void BorderlessWindow::setPicture(Picture picture) {
    picture_ = std::move(picture);
    isPlanned_ = false;
}

void BorderlessWindow::setCursor(Cursor cursor) {
    if (cursor == cursor_) {
        return;
    }
    cursor_ = cursor;
    showCursor();
    share_.connection.flush();
}

void BorderlessWindow::showCursor() {
    if (mouseTaker_) {
        mouseTaker_->setCursor(share_.cursors.find(cursor_));
    }
}

Registration BorderlessWindow::observePointer(std::function<void(const PointerEvent&)> onPointer) {
    return pointerObservers_->add(std::move(onPointer));
}

std::optional<Point> BorderlessWindow::pointer() {
    return mouseTaker_ ? mouseTaker_->pointer() : std::nullopt;
}

void BorderlessWindow::prepare() {
    if (isHidden()) {
        standing_ = Ready{};
    }
}

void BorderlessWindow::orderOut() {
    if (isMapped()) {
        standing_ = share_.mayWait ? Standing(Ready{}) : Standing(Hidden{});
    }
}

void BorderlessWindow::retire() {
    if (isReady()) {
        standing_ = Hidden{};
    }
}

void BorderlessWindow::build() {
    if (isHidden()) {
        return;
    }
    if (!surface_) {
        surface_ = std::make_unique<Surface>(share_.connection, area_, share_.format, background());
        placed_.reset();
        isPlanned_ = isShaped_ = isPainted_ = false;
    }
    if (takesMouse() && !mouseTaker_) {
        mouseTaker_ = std::make_unique<MouseTaker>(share_.connection, area_);
        showCursor();
        placed_.reset();
        isShaped_ = false;
    }
    if (!isPlanned_) {
        plan();
    }
}

void BorderlessWindow::plan() {
    auto plan = planPainting(picture_, area_.width, area_.height, background());
    Surface::Images images;
    for (const auto& step : plan.steps) {
        if (const auto* image = std::get_if<std::shared_ptr<const Image>>(&step.paint)) {
            images.emplace(image->get(), share_.images.use(*image));
        }
    }
    surface_->setPlan(std::move(plan), std::move(images));
    isPlanned_ = true;
    damage_.clear();
    if (isPainted_) {
        damage_ = common(whole(), damage(planned_, picture_));
    }
    planned_ = picture_;
    opaqueArea_.reset();
    isShaped_ = isShaped_ && (share_.isTranslucent || isPainted_);
}

void BorderlessWindow::arrange() {
    if (!takesMouse() && mouseTaker_) {
        mouseTaker_->hide();
    }
    if (!isMapped() && surface_) {
        hideSurface();
    }
    if (!std::holds_alternative<Below>(standing_)) {
        cutOut({});
    }
    if (!isMapped()) {
        return;
    }
    auto place = area_;
    place.x = isShown() ? place.x : -place.width;
    if (placed_ != place) {
        surface_->window().place(place);
        if (mouseTaker_) {
            mouseTaker_->place(place);
        }
        placed_ = place;
    }
    if (!isShaped_) {
        applyShape();
    } else if (!share_.isTranslucent && !damage_.empty()) {
        reshapeDamage();
    }
}

void BorderlessWindow::hideSurface() {
    auto& window = surface_->window();
    if (window.isShown() && !share_.isTranslucent) {
        // For every piece that becomes free the server goes through all pieces that still lie above: a box
        // around each tile is given back in a hundredth of the time.
        window.cutDownTo(withoutCuts(opaqueTiles(planned_)));
        isShaped_ = false;
    }
    window.hide();
    isPainted_ = false;
}

void BorderlessWindow::applyShape() {
    isShaped_ = true;
    const std::vector all{whole()};
    const auto shape = [&](const StageWindow& window, const std::vector<PixelRect>& areas) {
        if (cuts_.empty() && areas == all) {
            window.makeWhole();
        } else {
            window.cutDownTo(withoutCuts(areas));
        }
    };
    if (!share_.isTranslucent && !opaqueArea_) {
        opaqueArea_ = opaqueArea(picture_);
    }
    shape(surface_->window(), share_.isTranslucent ? all : *opaqueArea_);
    if (mouseTaker_) {
        shape(mouseTaker_->window(), all);
    }
}

void BorderlessWindow::reshapeDamage() {
    Picture damaged;
    std::ranges::copy_if(picture_.tiles, std::back_inserter(damaged.tiles), [this](const PictureTile& tile) {
        return std::ranges::any_of(damage_, [&](const PixelRect& area) { return overlap(area, tile.area); });
    });
    std::vector<PixelRect> opaque;
    for (const auto& area : opaqueArea(damaged)) {
        std::ranges::copy(common(area, damage_), std::back_inserter(opaque));
    }
    surface_->window().reshape(damage_, withoutCuts(std::move(opaque)));
}

std::vector<PixelRect> BorderlessWindow::withoutCuts(std::vector<PixelRect> areas) const {
    for (auto cut : cuts_) {
        cut.x -= area_.x;
        cut.y -= area_.y;
        areas = without(areas, cut);
    }
    return areas;
}

void BorderlessWindow::show() {
    if (!isMapped()) {
        return;
    }
    surface_->show();
    if (takesMouse()) {
        mouseTaker_->show();
    }
}

void BorderlessWindow::paint() {
    if (!isMapped()) {
        return;
    }
    if (!isPainted_) {
        surface_->paint();
        isPainted_ = true;
    } else if (!damage_.empty()) {
        surface_->repaint(damage_);
    }
    damage_.clear();
}

std::vector<xcb_window_t> BorderlessWindow::windows() const {
    std::vector<xcb_window_t> result;
    if (takesMouse() && mouseTaker_) {
        result.push_back(mouseTaker_->id());
    }
    if (isShown() && surface_) {
        result.push_back(surface_->id());
    }
    return result;
}

void BorderlessWindow::cutOut(std::vector<PixelRect> areas) {
    std::erase_if(areas, [this](const PixelRect& area) { return !overlap(area, area_); });
    if (areas == cuts_) {
        return;
    }
    cuts_ = std::move(areas);
    if (!surface_) {
        return;
    }
    applyShape();
    // One compositor never fills the last hole of a window unless that is shown anew.
    if (cuts_.empty() && surface_->window().isShown()) {
        showAnew();
    }
}

void BorderlessWindow::showAnew() {
    surface_->window().hide();
    surface_->show();
    surface_->paint();
}

void BorderlessWindow::rebuild() { surface_.reset(); }

bool BorderlessWindow::handle(const xcb_generic_event_t& event) {
    if (eventCode(event) == XCB_EXPOSE) {
        if (!surface_ || eventAs<xcb_expose_event_t>(event).window != surface_->id()) {
            return false;
        }
        if (isPainted_) {
            surface_->expose(event);
        }
        return true;
    }
    std::vector<PointerEvent> events;
    if (!mouseTaker_ || !mouseTaker_->handle(event, share_.held, events)) {
        return false;
    }
    tell(events);
    return true;
}

PointerAction BorderlessWindow::tellMovement() {
    const auto events = mouseTaker_->takeMovement();
    tell(events);
    return events.back().action;
}

void BorderlessWindow::tell(const std::vector<PointerEvent>& events) {
    const auto observers = pointerObservers_;
    for (const auto& event : events) {
        observers->notify(event);
    }
}

} // namespace karto::x11
