#include "Karto/Settings/Views/ShortcutField.h"

#include "Karto/Settings/Views/Look.h"

#include <QPainter>

#include <algorithm>

namespace karto {

namespace {

// Fields below each other are alike, and do not change their size for a recording.
constexpr int usualWidth = 112;
constexpr int usualHeight = 28;
constexpr int padding = 12;

} // namespace

ShortcutField::ShortcutField() {
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void ShortcutField::set(const QString& shortcut, bool isRecording) {
    isRecording_ = isRecording;
    setText(shortcut);
    update();
}

QSize ShortcutField::sizeHint() const {
    const auto metrics = fontMetrics();
    return {std::max(usualWidth, metrics.horizontalAdvance(text()) + 2 * padding),
            std::max(usualHeight, metrics.height() + padding)};
}

void ShortcutField::paintEvent(QPaintEvent* /*event*/) {
    const auto colors = look::colors(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal border = isRecording_ ? 2 : 1;
    const qreal inset = border / 2;
    painter.setPen(QPen(isRecording_ ? colors.accent : colors.hairline, border));
    painter.setBrush(isRecording_ ? look::mixed(colors.card, colors.accent, 0.12) : colors.card);
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset),
                            look::controlRadius - inset, look::controlRadius - inset);
    painter.setPen(colors.text);
    painter.drawText(rect(), Qt::AlignCenter, text());
}

} // namespace karto
