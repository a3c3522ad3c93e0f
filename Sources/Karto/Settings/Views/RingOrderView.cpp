#include "Karto/Settings/Views/RingOrderView.h"

#include "Karto/Settings/Views/ListRow.h"
#include "Karto/Settings/Views/Look.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>
#include <cstddef>

namespace karto {

namespace {

constexpr qreal dragOpacity = 0.1;

} // namespace

class RingOrderView::DropLine final : public QWidget {
public:
    explicit DropLine(QWidget* parent)
        : QWidget(parent) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        hide();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter(this).fillRect(rect(), look::colors(palette()).accent);
    }
};

class RingOrderView::Row final : public QWidget, public Spoken {
public:
    Row(RingOrderView& list, int index)
        : list_(list)
        , index_(index)
        , number_(new Text(TextRole::head))
        , name_(new Text(TextRole::body))
        , detail_(new Text(TextRole::caption))
        , pinned_(new Text(TextRole::caption, "pinned"))
        , pin_(new IconButton(Symbol::pin, {})) {
        auto* line = layOutListRow(*this, *number_);
        name_->setElided();
        detail_->setWordWrap(false);
        pinned_->setWordWrap(false);
        line->addWidget(name_);
        line->addWidget(detail_);
        line->addStretch();
        line->addWidget(pinned_);
        line->addWidget(pin_);
        connect(pin_, &QAbstractButton::clicked, this, [this] { togglePin(); });
    }

    void set(const RingOrderRow& row) {
        // What is dragged is a zone and not a place.
        if (row != row_) {
            endDrag();
        }
        row_ = row;
        const auto orientation = rawName(row.orientation);
        number_->setText(QString::number(row.order));
        name_->setText(QString::fromStdString(nameText(row.display)));
        name_->setToolTip(name_->text());
        detail_->setText(
            QString("(%1)%2").arg(QString::fromUtf8(orientation.data(), qsizetype(orientation.size())),
                                  row.isConnected ? QString() : QString("   not connected")));
        pinned_->setVisible(row.isPinned);
        const auto help = QString::fromStdString(pinHelp(row));
        pinned_->setToolTip(help);
        pin_->set(row.isPinned ? Symbol::pinFilled : Symbol::pin, help);
        setAccessibleName(QString("Zone %1, %2 %3%4")
                              .arg(number_->text(), name_->text(), detail_->text(),
                                   row.isPinned ? QString(", pinned") : QString()));
    }

    [[nodiscard]] QAccessible::Role spokenRole() const override { return QAccessible::ListItem; }

    [[nodiscard]] std::vector<Action> spokenActions() override {
        std::vector<Action> actions{
            {.name = row_.isPinned ? "Unpin" : "Pin", .keys = "Space", .perform = [this] { togglePin(); }}};
        if (index_ > 0) {
            actions.push_back({.name = "Move up", .keys = "Alt+Up", .perform = [this] { moveUp(); }});
        }
        if (index_ + 1 < static_cast<int>(list_.rows_.size())) {
            actions.push_back({.name = "Move down", .keys = "Alt+Down", .perform = [this] { moveDown(); }});
        }
        return actions;
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        paintListRow(*this, isDragged_ ? std::optional(look::faint(look::colors(palette()).text, dragOpacity))
                                       : std::nullopt);
    }

    void mousePressEvent(QMouseEvent* event) override {
        if (event->button() == Qt::LeftButton) {
            pressedAt_ = event->pos();
        }
    }

    void hideEvent(QHideEvent* /*event*/) override { endDrag(); }

    void mouseMoveEvent(QMouseEvent* event) override {
        if (!pressedAt_) {
            return;
        }
        const int distance = (event->pos() - *pressedAt_).manhattanLength();
        isDragged_ = isDragged_ || distance >= QApplication::startDragDistance();
        if (isDragged_) {
            list_.showDropLine(list_.insertionAt(mapTo(list_.card_, event->pos()).y()));
            update();
        }
    }

    void mouseReleaseEvent(QMouseEvent* event) override {
        if (event->button() != Qt::LeftButton || !pressedAt_) {
            return;
        }
        const bool isOnPin = !pinned_->isHidden() && pinned_->geometry().contains(*pressedAt_);
        if (endDrag()) {
            list_.move(index_, list_.insertionAt(mapTo(list_.card_, event->pos()).y()));
        } else if (isOnPin) {
            togglePin();
        }
    }

    void keyPressEvent(QKeyEvent* event) override {
        const bool isMove = event->modifiers().testFlag(Qt::AltModifier);
        switch (event->key()) {
        case Qt::Key_Escape:
            if (!endDrag()) {
                QWidget::keyPressEvent(event);
            }
            break;
        case Qt::Key_Up: isMove ? moveUp() : list_.focusRow(index_ - 1); break;
        case Qt::Key_Down: isMove ? moveDown() : list_.focusRow(index_ + 1); break;
        case Qt::Key_Space: togglePin(); break;
        default: QWidget::keyPressEvent(event); break;
        }
    }

private:
    // Whether the row was being dragged.
    bool endDrag() {
        pressedAt_.reset();
        if (!isDragged_) {
            return false;
        }
        isDragged_ = false;
        list_.showDropLine(std::nullopt);
        update();
        return true;
    }

    void moveUp() { list_.move(index_, index_ - 1); }

    void moveDown() { list_.move(index_, index_ + 2); }

    void togglePin() {
        list_.model_.edit([this](LayoutEditor& editor) { karto::togglePin(row_, editor); });
    }

    RingOrderView& list_;
    int index_;
    RingOrderRow row_;
    std::optional<QPoint> pressedAt_;
    bool isDragged_ = false;
    Text* number_;
    Text* name_;
    Text* detail_;
    Text* pinned_;
    IconButton* pin_;
};

RingOrderView::RingOrderView(SettingsModel& model)
    : model_(model)
    , card_(new Card(QAccessible::List))
    , dropLine_(new DropLine(card_)) {
    auto* lines = new QVBoxLayout(this);
    lines->setContentsMargins(0, 0, 0, 0);
    lines->setSpacing(8);
    lines->addWidget(new Text(TextRole::head, "Ring order"));
    lines->addWidget(card_);
    card_->setAccessibleName("Ring order");
    refresh();
}

void RingOrderView::refresh() {
    auto rows = ringOrderRows(model_.editor().config(), model_.status().displays);
    card_->setVisible(!rows.empty());
    if (rows == shown_) {
        return;
    }
    shown_ = std::move(rows);
    while (rows_.size() > shown_.size()) {
        rows_.back()->hide();
        rows_.back()->deleteLater();
        rows_.pop_back();
    }
    while (rows_.size() < shown_.size()) {
        rows_.push_back(new Row(*this, static_cast<int>(rows_.size())));
        card_->add(rows_.back());
    }
    for (std::size_t index = 0; index < shown_.size(); ++index) {
        rows_[index]->set(shown_[index]);
    }
    dropLine_->raise();
}

int RingOrderView::insertionAt(int y) const {
    const auto above =
        std::ranges::count_if(rows_, [y](const Row* row) { return row->geometry().center().y() < y; });
    return static_cast<int>(above);
}

void RingOrderView::showDropLine(std::optional<int> insertion) {
    dropLine_->setVisible(insertion.has_value());
    if (insertion) {
        constexpr int thickness = 2;
        const auto index = static_cast<std::size_t>(*insertion);
        const int y = index < rows_.size() ? rows_[index]->y() : rows_.back()->geometry().bottom();
        dropLine_->setGeometry(look::rowPadding, std::max(0, y - thickness / 2),
                               card_->width() - 2 * look::rowPadding, thickness);
        dropLine_->raise();
    }
}

void RingOrderView::move(int from, int to) {
    if (to < 0 || to > static_cast<int>(shown_.size())) {
        return;
    }
    const auto rows = shown_;
    const auto& moved = rows[static_cast<std::size_t>(from)];
    model_.edit([&](LayoutEditor& editor) { moveRow(rows, from, to, editor); });
    const auto now = std::ranges::find_if(shown_, [&](const RingOrderRow& row) {
        return row.path == moved.path && row.display == moved.display && row.orientation == moved.orientation;
    });
    focusRow(static_cast<int>(now - shown_.begin()));
}

void RingOrderView::focusRow(int index) {
    if (index >= 0 && index < static_cast<int>(rows_.size())) {
        rows_[static_cast<std::size_t>(index)]->setFocus(Qt::TabFocusReason);
    }
}

} // namespace karto
