#pragma once
// The ring of all zones, a row each. Rows are dragged to another place, or moved with Alt and the arrow keys.

#include "Karto/Settings/LayoutRows.h"
#include "Karto/Settings/SettingsModel.h"
#include "Karto/Settings/Views/Form.h"

#include <optional>
#include <vector>

namespace karto {

class RingOrderView final : public QWidget {
public:
    explicit RingOrderView(SettingsModel& model);

    // Shows the model as it is now.
    void refresh();

private:
    class Row;
    class DropLine;

    // Where a row dropped at that height of the list would be inserted.
    [[nodiscard]] int insertionAt(int y) const;
    void showDropLine(std::optional<int> insertion);
    void move(int from, int to);
    void focusRow(int index);

    SettingsModel& model_;
    std::vector<RingOrderRow> shown_;
    Card* card_;
    std::vector<Row*> rows_;
    DropLine* dropLine_;
};

} // namespace karto
