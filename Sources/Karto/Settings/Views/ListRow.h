#pragma once
// What the rows of the zone list and of the ring have in common.

#include "Karto/Settings/Views/Controls.h"

#include <QColor>
#include <QWidget>

#include <optional>

class QHBoxLayout;

namespace karto {

// Makes the row one that can be pointed at and have the focus. Returns its line, which begins with the
// number.
QHBoxLayout* layOutListRow(QWidget& row, Text& number);

// ground: what the row stands on; absent for one that is as all others, which then tells whether it is
// pointed at.
void paintListRow(QWidget& row, std::optional<QColor> ground);

} // namespace karto
