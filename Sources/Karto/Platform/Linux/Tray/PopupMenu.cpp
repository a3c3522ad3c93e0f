#include "Karto/Platform/Linux/Tray/PopupMenu.h"

#include <QAction>
#include <QCursor>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QKeySequence>
#include <QMenu>
#include <QScreen>
#include <QStringList>
#include <QTimer>

#include <algorithm>

namespace karto {

namespace {

constexpr int comfortableCharacters = 72;

QString shownText(const std::string& text) { return QString::fromStdString(text).replace('&', "&&"); }

// Breaks what is wider than a person reads at a glance into lines that are not.
QStringList wrapped(const QString& text, const QFontMetrics& metrics) {
    const int widest = metrics.averageCharWidth() * comfortableCharacters;
    QStringList lines{QString()};
    for (const auto& word : text.split(' ')) {
        QString& line = lines.back();
        const auto longer = line.isEmpty() ? word : line + ' ' + word;
        if (line.isEmpty() || metrics.horizontalAdvance(longer) <= widest) {
            line = longer;
        } else {
            lines.push_back(word);
        }
    }
    return lines;
}

void addLine(QMenu& menu, const MenuItem& line) {
    if (line.isSeparator) {
        menu.addSeparator();
        return;
    }
    if (!line.action) {
        for (const auto& part : wrapped(shownText(line.text), menu.fontMetrics())) {
            menu.addAction(part)->setEnabled(false);
        }
        return;
    }
    auto* action = menu.addAction(shownText(line.text));
    action->setEnabled(line.isEnabled);
    if (line.isChecked) {
        action->setCheckable(true);
        action->setChecked(*line.isChecked);
    }
    if (!line.keyEquivalent.empty()) {
        action->setShortcut("Ctrl+" + QString::fromStdString(line.keyEquivalent).toUpper());
        action->setShortcutVisibleInContextMenu(true);
    }
    // After the menu has closed and let go of the keyboard and the pointer.
    QObject::connect(action, &QAction::triggered, &menu,
                     [perform = line.action] { QTimer::singleShot(0, perform); });
}

// Screens keep their place in pixels when they are scaled; what is on them does not.
QRect scaled(const PixelRect& area) {
    for (const auto* screen : QGuiApplication::screens()) {
        const auto origin = screen->geometry().topLeft();
        const auto ratio = screen->devicePixelRatio();
        const QRect pixels(origin, screen->geometry().size() * ratio);
        if (pixels.contains(area.x, area.y)) {
            return {origin + (QPoint(area.x, area.y) - origin) / ratio,
                    QSize(area.width, area.height) / ratio};
        }
    }
    return {area.x, area.y, area.width, area.height};
}

// Below what it belongs to in the upper half of the screen, else above it.
QPoint beside(const QRect& anchor, const QSize& size) {
    const auto* screen = QGuiApplication::screenAt(anchor.center());
    if (screen == nullptr) {
        return anchor.bottomLeft();
    }
    const auto area = screen->geometry();
    const bool isBelow = anchor.center().y() < area.center().y();
    const int left = std::max(area.left(), std::min(anchor.left(), area.right() + 1 - size.width()));
    return {left, isBelow ? anchor.bottom() + 1 : anchor.top() - size.height()};
}

} // namespace

PopupMenu::PopupMenu() = default;

PopupMenu::~PopupMenu() = default;

void PopupMenu::show(const Menu& menu, const std::optional<PixelRect>& anchor) {
    menu_ = std::make_unique<QMenu>();
    for (const auto& line : menu) {
        addLine(*menu_, line);
    }
    menu_->popup(anchor ? beside(scaled(*anchor), menu_->sizeHint()) : QCursor::pos());
}

} // namespace karto
