#include "Karto/Drawing/Paragraph.h"

#include "Karto/Drawing/QtImages.h"

#include <QFontMetrics>
#include <QPainter>
#include <QTextLayout>
#include <QTextOption>

#include <algorithm>
#include <cmath>

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
        double height = 0;
        layout_.beginLayout();
        for (auto line = layout_.createLine(); line.isValid(); line = layout_.createLine()) {
            line.setLineWidth(width);
            line.setPosition({0, height});
            height += line.height();
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

    [[nodiscard]] int startOfLine(int line) const { return layout_.lineAt(line).textStart(); }

    [[nodiscard]] QSize size() const {
        double width = 0;
        double height = 0;
        for (int i = 0; i < layout_.lineCount(); ++i) {
            width = layout_.lineAt(i).width();
            height += layout_.lineAt(i).height();
        }
        return {static_cast<int>(std::ceil(width)), static_cast<int>(std::ceil(height))};
    }

    void draw(QPainter& painter) const { layout_.draw(&painter, {0, 0}); }

private:
    QTextLayout layout_;
};

// Ends the text where its line of that number does.
QString elided(const QString& text, const QFont& font, int width, int lineCount) {
    Lines lines(text, font);
    if (lines.breakAt(width) <= lineCount) {
        return text;
    }
    const int start = lines.startOfLine(lineCount - 1);
    return text.left(start) + QFontMetrics(font).elidedText(text.mid(start), Qt::ElideRight, width);
}

} // namespace

QImage paragraph(QString text, const QFont& font, const QColor& color, QSize room) {
    text.replace('\n', QChar::LineSeparator);
    const int width = std::max(1, room.width());
    const int mostLines = std::max(1, room.height() / QFontMetrics(font).lineSpacing());
    Lines lines(elided(text, font, width, mostLines), font);
    lines.breakEvenly(width);

    QImage image = canvas(lines.size());
    QPainter painter(&image);
    painter.setPen(color);
    lines.draw(painter);
    return image;
}

} // namespace karto::drawing
