#pragma once
// The connected displays as a picture; a click selects one.

#include "Karto/Settings/DisplayMap.h"
#include "Karto/Settings/Views/Spoken.h"

#include <QWidget>

#include <map>
#include <string>
#include <vector>

class QAbstractButton;

namespace karto {

class DisplayMapView final : public QWidget, public Spoken {
public:
    static constexpr int mapHeight = 160;

    explicit DisplayMapView(SettingsModel& model);

    // Shows the model as it is now.
    void refresh();

    [[nodiscard]] QSize sizeHint() const override { return {320, mapHeight}; }

    [[nodiscard]] QAccessible::Role spokenRole() const override { return QAccessible::Grouping; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    class Box;

    void rebuild();

    SettingsModel& model_;
    std::vector<DisplayInfo> displays_;
    std::vector<Box*> boxes_;
};

} // namespace karto
