#include "Karto/Settings/Views/ZoneListView.h"

#include "Karto/Settings/Views/ListRow.h"
#include "Karto/Settings/Views/Look.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLocale>
#include <QPainter>
#include <QVBoxLayout>

#include <cstddef>

namespace karto {

namespace {

constexpr qreal selectedOpacity = 0.15;
constexpr int valueGap = 16;
constexpr auto splitColumnsHelp = "Split into two columns";
constexpr auto splitRowsHelp = "Split into two rows";

// The text with the digits of the person's language.
QString inOwnDigits(QString text) {
    const auto zero = QLocale().zeroDigit();
    for (QChar& character : text) {
        if (zero.size() == 1 && character >= u'0' && character <= u'9') {
            character = QChar(zero.front().unicode() + character.digitValue());
        }
    }
    return text;
}

// A zone's rectangle, whose values stand below those of other rows.
class RectText final : public QLabel {
public:
    RectText() {
        setTextFormat(Qt::PlainText);
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

    [[nodiscard]] QSize minimumSizeHint() const override { return {4 * column(), fontMetrics().height()}; }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        const auto colors = look::colors(parentWidget()->palette());
        QPainter painter(this);
        QRect part = rect();
        for (const QString& value : text().split("   ")) {
            painter.setPen(colors.secondary);
            painter.drawText(part, Qt::AlignVCenter, value.left(1));
            painter.setPen(colors.text);
            painter.drawText(part.adjusted(fontMetrics().horizontalAdvance("w "), 0, 0, 0), Qt::AlignVCenter,
                             value.mid(2));
            part.setLeft(part.left() + column());
        }
    }

private:
    [[nodiscard]] int column() const { return fontMetrics().horizontalAdvance("w 0.000") + valueGap; }
};

} // namespace

// A click anywhere on the row but its buttons selects the zone.
class ZoneListView::Row final : public QAbstractButton, public Spoken {
public:
    explicit Row(SettingsModel& model)
        : model_(model)
        , number_(new Text(TextRole::head))
        , rect_(new RectText)
        , columns_(new IconButton(Symbol::splitColumns, splitColumnsHelp))
        , rowsOf_(new IconButton(Symbol::splitRows, splitRowsHelp))
        , remove_(new IconButton(Symbol::trash, {})) {
        setCheckable(true);
        auto* line = layOutListRow(*this, *number_);
        number_->setAttribute(Qt::WA_TransparentForMouseEvents);
        line->addWidget(rect_, 1);
        auto* buttons = new QHBoxLayout;
        buttons->setSpacing(4);
        for (auto* button : {columns_, rowsOf_, remove_}) {
            buttons->addWidget(button);
        }
        line->addLayout(buttons);
        connect(this, &QAbstractButton::clicked, this, [this] { model_.selectZone(row_.path); });
        connect(columns_, &QAbstractButton::clicked, this, [this] { split(Axis::vertical); });
        connect(rowsOf_, &QAbstractButton::clicked, this, [this] { split(Axis::horizontal); });
        connect(remove_, &QAbstractButton::clicked, this, [this] {
            edit([this](LayoutEditor& editor, const DisplayInfo& display) {
                editor.removeZone(row_.path, display.name, display.orientation());
            });
        });
    }

    void set(const ZoneRow& row) {
        row_ = row;
        const auto decimalPoint = QLocale().decimalPoint().toStdString();
        number_->setText(QString::number(row.order));
        rect_->setText(inOwnDigits(QString::fromStdString(rectText(row.rect, decimalPoint))));
        columns_->setEnabled(row.canSplit);
        rowsOf_->setEnabled(row.canSplit);
        remove_->setEnabled(row.canRemove);
        remove_->set(Symbol::trash,
                     row.canRemove ? "Remove this zone" : "A display's only zone cannot be removed");
        mark(model_.selectedZonePath() == row.path);
        setAccessibleName(QString("Zone %1, %2").arg(number_->text(), rect_->text()));
        update();
    }

    [[nodiscard]] QAccessible::Role spokenRole() const override { return QAccessible::ListItem; }

    [[nodiscard]] const NodePath& path() const { return row_.path; }

protected:
    void nextCheckState() override {}

    void paintEvent(QPaintEvent* /*event*/) override {
        paintListRow(*this, isChecked()
                                ? std::optional(look::faint(look::colors(palette()).accent, selectedOpacity))
                                : std::nullopt);
    }

private:
    template<typename Operation>
    void edit(Operation operation) {
        if (const auto display = model_.selectedDisplay()) {
            model_.edit([&](LayoutEditor& editor) { operation(editor, *display); });
        }
    }

    void mark(bool isSelected) {
        if (isSelected != isChecked()) {
            setChecked(isSelected);
            QAccessibleEvent event(this, QAccessible::Selection);
            QAccessible::updateAccessibility(&event);
        }
    }

    void split(Axis axis) {
        edit([&](LayoutEditor& editor, const DisplayInfo& display) {
            editor.split(row_.path, display.name, display.orientation(), axis);
        });
    }

    SettingsModel& model_;
    ZoneRow row_;
    Text* number_;
    RectText* rect_;
    IconButton* columns_;
    IconButton* rowsOf_;
    IconButton* remove_;
};

ZoneListView::ZoneListView(SettingsModel& model)
    : model_(model)
    , card_(new Card(QAccessible::List))
    , empty_(new Text(TextRole::secondary, "This display has no zones — pick a preset above.")) {
    auto* lines = new QVBoxLayout(this);
    lines->setContentsMargins(0, 0, 0, 0);
    lines->addWidget(empty_);
    lines->addWidget(card_);
    card_->setAccessibleName("Zones");
    refresh();
}

void ZoneListView::refresh() {
    const auto display = model_.selectedDisplay();
    const auto rows = display ? zoneRows(model_.editor().config(), *display) : std::vector<ZoneRow>();
    while (rows_.size() > rows.size()) {
        // It may be its own button that removed it.
        rows_.back()->hide();
        rows_.back()->deleteLater();
        rows_.pop_back();
    }
    while (rows_.size() < rows.size()) {
        rows_.push_back(new Row(model_));
        card_->add(rows_.back());
    }
    for (std::size_t index = 0; index < rows.size(); ++index) {
        rows_[index]->set(rows[index]);
    }
    empty_->setVisible(rows.empty());
    card_->setVisible(!rows.empty());
}

QWidget* ZoneListView::selectedRow() const {
    const auto selected = std::ranges::find_if(
        rows_, [this](const Row* row) { return row->path() == model_.selectedZonePath(); });
    return selected != rows_.end() ? *selected : nullptr;
}

} // namespace karto
