#include "Karto/Settings/Views/Form.h"

#include "Karto/Settings/Views/Look.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

#include <iterator>

namespace karto {

namespace {

constexpr int textGap = 12;
constexpr int noteMargin = 8;
constexpr int labelGap = 16;

// Controls bring room for the ring of their focus, texts do not.
bool isText(const QWidget* widget) { return qobject_cast<const QLabel*>(widget) != nullptr; }

} // namespace

FormRow::FormRow(QWidget* label, std::initializer_list<QWidget*> controls)
    : lines_(new QVBoxLayout(this)) {
    const bool endsWithText = controls.size() == 0 || isText(*std::prev(controls.end()));
    const bool beginsWithText = qobject_cast<const QAbstractButton*>(label) == nullptr;
    const auto margin = [](bool isText) { return look::rowPadding - (isText ? 0 : look::ringRoom); };
    lines_->setContentsMargins(margin(beginsWithText), 0, margin(endsWithText), 0);
    lines_->setSpacing(0);
    auto* line = new QHBoxLayout;
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(0);
    // Where its text takes more than a line.
    label->setContentsMargins(0, noteMargin, 0, noteMargin);
    line->addWidget(label, 1, Qt::AlignVCenter | (beginsWithText ? Qt::Alignment() : Qt::AlignLeft));
    int gap = labelGap;
    for (QWidget* control : controls) {
        line->addSpacing(gap);
        line->addWidget(control, 0, Qt::AlignVCenter);
        gap = isText(control) ? textGap : 0;
    }
    // A row keeps its height whatever its controls are.
    line->addStrut(look::rowHeight);
    lines_->addLayout(line);
}

Note* FormRow::addNote(std::optional<Symbol> symbol) {
    auto* note = new Note(symbol, TextRole::caption);
    // Its distances belong to the note: hidden with it.
    note->setContentsMargins(0, 0, 0, noteMargin);
    note->hide();
    lines_->addWidget(note);
    return note;
}

void showOrHide(Note& note, const std::optional<QString>& text) {
    note.setText(text.value_or(QString()));
    note.setVisible(text.has_value());
}

QVBoxLayout* addInset(QVBoxLayout& section) {
    auto* lines = new QVBoxLayout;
    lines->setContentsMargins(look::ringRoom, 0, look::ringRoom, 0);
    lines->setSpacing(section.spacing());
    section.addLayout(lines);
    return lines;
}

Card::Card(QAccessible::Role role)
    : role_(role)
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
