#pragma once
// What the settings window shows: the sections on the left; on the right the title, what went wrong, the
// section itself, and the way back.

#include "Karto/Settings/GeneralSettings.h"
#include "Karto/Settings/SettingsModel.h"
#include "Karto/Settings/Views/Controls.h"

#include <QWidget>

#include <functional>

class QScrollArea;

namespace karto {

class SettingsView final : public QWidget {
public:
    struct Actions {
        std::function<void()> revert;
        std::function<void()> pickColor;
        std::function<void()> openConfig;
    };

    static constexpr QSize smallestSize{760, 560};

    SettingsView(SettingsModel& model, const GeneralSettings::Services& general, Actions actions);

    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    // The keyboard goes through the controls as they stand, whenever each of them came to be.
    bool focusNextPrevChild(bool next) override;

private:
    [[nodiscard]] QWidget* makePane();
    [[nodiscard]] QWidget* makeBottomRow();
    [[nodiscard]] QWidget* makeSection();
    void refresh();
    // Moves the part to the middle of the pane once it has its place.
    void reveal(QWidget& part);
    void scrollTo(const QWidget& part);

    SettingsModel& model_;
    GeneralSettings::Services general_;
    Actions actions_;
    Text* title_ = nullptr;
    Note* saveError_ = nullptr;
    QWidget* sidebar_ = nullptr;
    QScrollArea* scroll_ = nullptr;
    std::optional<SettingsSection> shown_;
    Button* undo_ = nullptr;
    Button* redo_ = nullptr;
    Button* revert_ = nullptr;
    Registration changes_;
};

} // namespace karto
