#include "Karto/Settings/Views/Form.h"

#include "Karto/Settings/Views/Look.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

namespace karto {

namespace {

constexpr int rowMargin = 6;
constexpr int controlGap = 8;
constexpr int labelGap = 16;

} // namespace

FormRow::FormRow(QWidget* label, std::initializer_list<QWidget*> controls)
    : lines_(new QVBoxLayout(this)) {
    lines_->setContentsMargins(look::rowPadding, 0, look::rowPadding, 0);
    lines_->setSpacing(0);
    auto* line = new QHBoxLayout;
    line->setContentsMargins(0, rowMargin, 0, rowMargin);
    line->setSpacing(controlGap);
    line->addWidget(label, 1, Qt::AlignVCenter);
    if (controls.size() > 0) {
        line->addSpacing(labelGap - controlGap);
    }
    for (QWidget* control : controls) {
        line->addWidget(control, 0, Qt::AlignVCenter);
    }
    // A row keeps its height whatever its controls are.
    line->addStrut(look::rowHeight - 2 * rowMargin);
    lines_->addLayout(line);
}

Note* FormRow::addNote(std::optional<Symbol> symbol) {
    auto* note = new Note(symbol, TextRole::caption);
    note->setContentsMargins(0, 0, 0, 0);
    note->hide();
    lines_->addWidget(note);
    lines_->addSpacing(rowMargin);
    return note;
}

void showOrHide(Note& note, const std::optional<QString>& text) {
    note.setText(text.value_or(QString()));
    note.setVisible(text.has_value());
}

Card::Card(QWidget* parent)
    : QWidget(parent)
    , rows_(new QVBoxLayout(this)) {
    rows_->setContentsMargins(0, 0, 0, 0);
    rows_->setSpacing(0);
}

void Card::add(QWidget* row) { rows_->addWidget(row); }

void Card::paintEvent(QPaintEvent* /*event*/) {
    const auto colors = look::colors(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal pixel = 1 / devicePixelRatioF();
    painter.setPen(QPen(colors.hairline, pixel));
    painter.setBrush(colors.card);
    const qreal inset = pixel / 2;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), look::cardRadius,
                            look::cardRadius);
    const QWidget* above = nullptr;
    for (int index = 0; index < rows_->count(); ++index) {
        const QWidget* row = rows_->itemAt(index)->widget();
        if (row == nullptr || row->isHidden()) {
            continue;
        }
        if (above != nullptr) {
            look::paintHairline(painter, look::rowPadding, width(), row->y(), colors.hairline);
        }
        above = row;
    }
}

Group::Group(const QString& head, QWidget* parent)
    : QWidget(parent)
    , card_(new Card) {
    constexpr int headGap = 8;
    auto* lines = new QVBoxLayout(this);
    lines->setContentsMargins(0, 0, 0, 0);
    lines->setSpacing(headGap);
    if (!head.isEmpty()) {
        lines->addWidget(new Text(TextRole::head, head));
    }
    lines->addWidget(card_);
    card_->setAccessibleName(head);
}

FormRow* Group::addRow(const QString& label, std::initializer_list<QWidget*> controls) {
    auto* row = new FormRow(new Text(TextRole::body, label), controls);
    card_->add(row);
    return row;
}

} // namespace karto
