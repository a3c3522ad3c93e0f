#pragma once
// Where layouts are made: the displays, the zones of the selected one and the ring of all zones; or why the
// file cannot be edited here, and what to do about it.

#include "Karto/Settings/LayoutSettings.h"
#include "Karto/Settings/SettingsModel.h"
#include "Karto/Settings/Views/Form.h"

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

class QMenu;
class QVBoxLayout;

namespace karto {

class DisplayMapView;
class RingOrderView;
class ZoneListView;

class LayoutSectionView final : public QWidget {
public:
    struct Actions {
        // Opens the configuration file with the desktop's application for it.
        std::function<void()> openConfig;
        // Brings a part of the section into the middle of what is seen of it.
        std::function<void(QWidget&)> reveal;
    };

    LayoutSectionView(SettingsModel& model, Actions actions);

private:
    void rebuild();
    void buildLegacyFormat();
    void buildUnreadableFile();
    void buildEditor();
    void addMessage(const QString& head, const std::vector<QWidget*>& parts);
    Button* openConfigButton();
    void listPresets(QMenu& menu, Orientation orientation,
                     const std::function<void(const LayoutPreset&)>& onChoice);
    void refresh();
    void refreshEditor();

    SettingsModel& model_;
    Actions actions_;
    LayoutSettings::Content content_ = LayoutSettings::Content::editor;
    QWidget* body_ = nullptr;
    QVBoxLayout* lines_ = nullptr;
    // Of the editor; null in the others.
    DisplayMapView* map_ = nullptr;
    QWidget* display_ = nullptr;
    Text* nothingSelected_ = nullptr;
    Text* name_ = nullptr;
    MenuButton* presets_ = nullptr;
    QVBoxLayout* warnings_ = nullptr;
    std::vector<std::string> shownWarnings_;
    std::optional<Orientation> presetOrientation_;
    ZoneListView* zones_ = nullptr;
    RingOrderView* ring_ = nullptr;
    // The display and the zone whose row was brought into sight.
    std::pair<std::string, std::optional<NodePath>> revealed_;
    Registration changes_;
};

} // namespace karto
