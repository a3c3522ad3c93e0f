#pragma once
// The list of the sections, one of them selected.

#include "Karto/Settings/SettingsModel.h"

#include <QListWidget>

namespace karto {

class SidebarView final : public QListWidget {
public:
    explicit SidebarView(SettingsModel& model);

protected:
    void paintEvent(QPaintEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    [[nodiscard]] QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                                       const QEvent* event) const override;

private:
    SettingsModel& model_;
    Registration changes_;
};

} // namespace karto
