#include "Karto/Drawing/Paragraph.h"

#include "Karto/Drawing/QtImages.h"

#include <QFontMetrics>
#include <QPainter>
#include <QTextLayout>
#include <QTextOption>

#include <cmath>
#include <numeric>
#include <optional>

namespace karto::drawing {

namespace {

class Lines {
public:
    Lines(const QString& text, const QFont& font)
        : layout_(text, font) {
        QTextOption option(Qt::AlignHCenter);
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        layout_.setTextOption(option);
    }

    int breakAt(int width) {
        size_ = QSizeF(width, 0);
        layout_.beginLayout();
        for (auto line = layout_.createLine(); line.isValid(); line = layout_.createLine()) {
            line.setLineWidth(width);
            line.setPosition({0, size_.height()});
            size_.rheight() += line.height();
        }
        layout_.endLayout();
        return layout_.lineCount();
    }

    // Breaks where the lines are as short as they can be without being more.
    void breakEvenly(int width) {
        const int count = breakAt(width);
        int tooNarrow = 0;
        while (width - tooNarrow > 1) {
            const int middle = std::midpoint(tooNarrow, width);
            (breakAt(middle) > count ? tooNarrow : width) = middle;
        }
        breakAt(width);
    }

    // Where the last line above that height starts; absent when all lines are.
    [[nodiscard]] std::optional<int> startOfLastAbove(int height) const {
        for (int i = 1; i < layout_.lineCount(); ++i) {
            if (layout_.lineAt(i).rect().bottom() > height) {
                return layout_.lineAt(i - 1).textStart();
            }
        }
        return std::nullopt;
    }

    [[nodiscard]] QSize size() const {
        return {static_cast<int>(size_.width()), static_cast<int>(std::ceil(size_.height()))};
    }

    void draw(QPainter& painter) const { layout_.draw(&painter, {0, 0}); }

private:
    QTextLayout layout_;
    QSizeF size_;
};

// Ends the text in its last line that fits.
QString elided(const QString& text, const QFont& font, QSize room) {
    Lines lines(text, font);
    lines.breakAt(room.width());
    const auto start = lines.startOfLastAbove(room.height());
    return start ? text.left(*start) +
                       QFontMetrics(font).elidedText(text.mid(*start), Qt::ElideRight, room.width())
                 : text;
}

} // namespace

QImage paragraph(QString text, const QFont& font, const QColor& color, QSize room) {
    text.replace('\n', QChar::LineSeparator);
    room = room.expandedTo({1, 1});
    Lines lines(elided(text, font, room), font);
    lines.breakEvenly(room.width());

    QImage image = canvas(lines.size());
    QPainter painter(&image);
    painter.setPen(color);
    lines.draw(painter);
    return image;
}

} // namespace karto::drawing
