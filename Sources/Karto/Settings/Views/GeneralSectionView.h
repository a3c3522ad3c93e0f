#pragma once
// The program itself: where layouts are made, start at login, updates, and the permission to move windows.

#include "Karto/Settings/GeneralSettings.h"
#include "Karto/Settings/SettingsModel.h"
#include "Karto/Settings/Views/Form.h"

namespace karto {

class GeneralSectionView final : public QWidget {
public:
    GeneralSectionView(SettingsModel& model, const GeneralSettings::Services& services);

protected:
    void changeEvent(QEvent* event) override;

private:
    void addStartup(QLayout& groups);
    void addPermission(QLayout& groups);
    void refresh();

    GeneralSettings settings_;
    FormRow* blocked_ = nullptr;
    FormRow* startAtLogin_ = nullptr;
    Switch* startSwitch_ = nullptr;
    Note* loginItemFailure_ = nullptr;
    Switch* updateSwitch_ = nullptr;
    Note* permission_ = nullptr;
    Button* openAccessibility_ = nullptr;
    Registration changes_;
};

} // namespace karto
