#include "Karto/Platform/TrayItem.h"

#include <utility>

namespace karto {

TrayItem::TrayItem(Tray& preferred, Tray& fallback, Scheduler& scheduler)
    : preferred_(preferred)
    , fallback_(fallback)
    , scheduler_(scheduler) {}

Registration TrayItem::install(DrawIcon drawIcon, MakeMenu makeMenu) {
    content_ = {.drawIcon = std::move(drawIcon), .makeMenu = std::move(makeMenu), .face = {}};
    presenceChanges_ = preferred_.observePresence(callbacks_.wrap([this] { choose(); }));
    show(*content_);
    choose();
    return Registration(callbacks_.wrap([this] { remove(); }));
}

void TrayItem::remove() {
    presenceChanges_.reset();
    waiting_.reset();
    setFallback(false);
    preferred_.hide();
    content_.reset();
}

void TrayItem::setFace(const StatusItemFace& face) {
    if (content_ && face != content_->face) {
        content_->face = face;
        show(*content_);
    }
}

void TrayItem::updateMenu() {
    if (content_) {
        preferred_.updateMenu();
        if (usesFallback_) {
            fallback_.updateMenu();
        }
    }
}

bool TrayItem::isShown() const {
    return content_ && (preferred_.presence() == Tray::Presence::present ||
                        (usesFallback_ && fallback_.presence() == Tray::Presence::present));
}

void TrayItem::show(const StatusItemContent& content) {
    preferred_.show(content);
    if (usesFallback_) {
        fallback_.show(content);
    }
}

void TrayItem::choose() {
    if (preferred_.presence() == Tray::Presence::present) {
        waiting_.reset();
        setFallback(false);
    } else if (!usesFallback_ && !waiting_) {
        waiting_ = scheduler_.after(patience, callbacks_.wrap([this] {
            waiting_.reset();
            setFallback(true);
        }));
    }
}

void TrayItem::setFallback(bool isUsed) {
    if (isUsed == usesFallback_) {
        return;
    }
    usesFallback_ = isUsed;
    if (!isUsed) {
        fallback_.hide();
    } else if (content_) {
        fallback_.show(*content_);
    }
}

} // namespace karto
