#pragma once
// The list of the sections, one of them selected.

#include "Karto/Settings/SettingsModel.h"

#include <QListWidget>

namespace karto {

class SidebarView final : public QListWidget {
public:
    explicit SidebarView(SettingsModel& model);

protected:
    void changeEvent(QEvent* event) override;
    [[nodiscard]] QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                                       const QEvent* event) const override;

private:
    void adopt();

    SettingsModel& model_;
    Registration changes_;
};

} // namespace karto
