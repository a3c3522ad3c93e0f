#include "Karto/Settings/Views/SidebarView.h"

#include "Karto/Settings/Views/Look.h"
#include "Karto/Settings/Views/Symbols.h"

#include <QPainter>
#include <QStyledItemDelegate>

#include <algorithm>
#include <utility>

namespace karto {

namespace {

constexpr int margin = 8;
constexpr int symbolSide = 16;
constexpr int symbolIndent = 10;
constexpr int textIndent = 36;

Symbol symbolOf(SettingsSection section) {
    switch (section) {
    case SettingsSection::general: return Symbol::gear;
    case SettingsSection::shortcuts: return Symbol::keyboard;
    case SettingsSection::overlay: return Symbol::overlay;
    case SettingsSection::layout: return Symbol::layout;
    }
    std::unreachable();
}

class RowDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& /*index*/) const override {
        return {0, std::max(look::sidebarRow, option.fontMetrics.height() + 12)};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        const auto colors = look::colors(option.palette);
        const bool isSelected = option.state.testFlag(QStyle::State_Selected);
        const QRectF row(option.rect);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(Qt::NoPen);
        if (isSelected || option.state.testFlag(QStyle::State_MouseOver)) {
            painter->setBrush(isSelected ? colors.accent : look::mixed(colors.sidebar, colors.text, 0.06));
            painter->drawRoundedRect(row, look::controlRadius, look::controlRadius);
        }
        const auto color = isSelected ? colors.onAccent : colors.text;
        const auto section = settingsSections.at(static_cast<std::size_t>(index.row()));
        painter->drawPixmap(
            QPointF(row.left() + symbolIndent, row.center().y() - symbolSide / 2.0),
            symbolPixmap(symbolOf(section), symbolSide, painter->device()->devicePixelRatioF(), color));
        painter->setPen(color);
        painter->drawText(row.adjusted(textIndent, 0, -margin, 0), Qt::AlignVCenter, index.data().toString());
        painter->restore();
    }
};

} // namespace

SidebarView::SidebarView(SettingsModel& model)
    : model_(model)
    , changes_(model.observe([this] { setCurrentRow(static_cast<int>(model_.section())); })) {
    setFrameShape(QFrame::NoFrame);
    setItemDelegate(new RowDelegate(this));
    setMouseTracking(true);
    setSpacing(look::ringRoom);
    // The ground is painted below this.
    setViewportMargins(margin - look::ringRoom, margin, margin - look::ringRoom, margin);
    viewport()->setAutoFillBackground(false);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAccessibleName("Sections");
    for (const auto section : settingsSections) {
        const auto text = title(section);
        addItem(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
    }
    setCurrentRow(static_cast<int>(model.section()));
    // A screen reader selects a section without going to it, beside the one that is selected or after none
    // is.
    connect(this, &QListWidget::itemSelectionChanged, this, [this] {
        const auto selected = selectedIndexes();
        const auto other = std::ranges::find_if(selected, [this](const QModelIndex& index) {
            return index.row() != static_cast<int>(model_.section());
        });
        if (other != selected.end()) {
            model_.show(settingsSections.at(static_cast<std::size_t>(other->row())));
        } else if (selected.empty()) {
            currentItem()->setSelected(true);
        }
    });
}

void SidebarView::paintEvent(QPaintEvent* event) {
    QListWidget::paintEvent(event);
    if (hasFocus()) {
        QPainter painter(viewport());
        look::paintFocusRing(painter, visualRect(currentIndex()), look::controlRadius,
                             look::colors(palette()).accent);
    }
}

QItemSelectionModel::SelectionFlags SidebarView::selectionCommand(const QModelIndex& index,
                                                                  const QEvent* /*event*/) const {
    // One section is always selected.
    return index.isValid() ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate;
}

void SidebarView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QListWidget::currentChanged(current, previous);
    viewport()->update();
}

void SidebarView::focusInEvent(QFocusEvent* event) {
    QListWidget::focusInEvent(event);
    viewport()->update();
}

void SidebarView::focusOutEvent(QFocusEvent* event) {
    QListWidget::focusOutEvent(event);
    viewport()->update();
}

} // namespace karto
