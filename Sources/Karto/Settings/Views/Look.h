#pragma once
// How the program's windows look: colours mixed from the desktop's palette, fonts derived from its font, and
// the few measures that everything keeps to. Lengths are points.

#include <QColor>
#include <QFont>
#include <QPalette>

class QPainter;
class QRectF;

namespace karto::look {

inline constexpr int sidebarRow = 32;
inline constexpr int rowHeight = 44;
inline constexpr int rowPadding = 16;
inline constexpr int iconButtonSide = 28;
inline constexpr int symbolSide = 16;
inline constexpr qreal cardRadius = 10;
inline constexpr qreal controlRadius = 6;
inline constexpr int paneWidth = 640;
inline constexpr int groupGap = 24;
// Around a control, for the ring of the focus.
inline constexpr int ringRoom = 4;

struct Colors {
    QColor ground;
    QColor sidebar;
    QColor card;
    QColor control;
    QColor hairline;
    QColor text;
    // For what a person reads second; never below a contrast of 4.5 to 1.
    QColor secondary;
    QColor disabled;
    QColor accent;
    QColor onAccent;
    QColor error;
};

Colors colors(const QPalette& palette);

// `share` of b, the rest of a.
QColor mixed(const QColor& a, const QColor& b, qreal share);

// The colour, as much of it as the opacity says.
QColor faint(QColor color, qreal opacity);

QFont titleFont();
QFont semiboldFont();
QFont captionFont();

// The ring around a control that has the focus.
void paintFocusRing(QPainter& painter, const QRectF& control, qreal radius, const QColor& accent);

// A line one device pixel thick.
void paintHairline(QPainter& painter, qreal left, qreal right, qreal y, const QColor& color);

} // namespace karto::look
