#pragma once
// A sentence or two, set in centred lines.

#include <QColor>
#include <QFont>
#include <QImage>
#include <QSize>
#include <QString>

namespace karto::drawing {

// As few lines as fit the width, of about equal lengths; what does not fit the height is elided. The image
// is as large as its lines.
QImage paragraph(QString text, const QFont& font, const QColor& color, QSize room);

} // namespace karto::drawing
