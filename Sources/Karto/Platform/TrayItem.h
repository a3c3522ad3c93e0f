#pragma once
// The status item on a desktop with two kinds of trays: in the preferred kind where there is one, in the
// other kind where there is none. A preferred tray that is late or has crashed is waited for a moment, so
// that the item does not jump.

#include "Karto/Platform/Scheduler.h"
#include "Karto/Platform/StatusItem.h"
#include "Karto/Platform/Tray.h"
#include "Karto/Platform/WeakCallbacks.h"

#include <chrono>
#include <optional>

namespace karto {

class TrayItem final : public StatusItem {
public:
    static constexpr std::chrono::milliseconds patience{1000};

    TrayItem(Tray& preferred, Tray& fallback, Scheduler& scheduler);

    [[nodiscard]] Registration install(DrawIcon drawIcon, MakeMenu makeMenu) override;
    void setFace(const StatusItemFace& face) override;
    void updateMenu() override;
    [[nodiscard]] bool isShown() const override;

private:
    void remove();
    void show(const StatusItemContent& content);
    void choose();
    void setFallback(bool isUsed);

    Tray& preferred_;
    Tray& fallback_;
    Scheduler& scheduler_;
    // Absent while no item is installed.
    std::optional<StatusItemContent> content_;
    bool usesFallback_ = false;
    Registration waiting_;
    Registration presenceChanges_;
    WeakCallbacks callbacks_;
};

} // namespace karto
