#pragma once
// The zones of the selected display, a row each.

#include "Karto/Settings/LayoutRows.h"
#include "Karto/Settings/SettingsModel.h"
#include "Karto/Settings/Views/Form.h"

#include <vector>

namespace karto {

class ZoneListView final : public QWidget {
public:
    explicit ZoneListView(SettingsModel& model);

    // Shows the model as it is now.
    void refresh();

    // The row of the selected zone; null when it is not in the list.
    [[nodiscard]] QWidget* selectedRow() const;

private:
    class Row;

    SettingsModel& model_;
    Card* card_;
    Text* empty_;
    std::vector<Row*> rows_;
};

} // namespace karto
