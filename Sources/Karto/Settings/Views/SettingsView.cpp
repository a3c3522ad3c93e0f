#include "Karto/Settings/Views/SettingsView.h"

#include "Karto/Settings/Views/GeneralSectionView.h"
#include "Karto/Settings/Views/LayoutSectionView.h"
#include "Karto/Settings/Views/Look.h"
#include "Karto/Settings/Views/OverlaySectionView.h"
#include "Karto/Settings/Views/ShortcutsSectionView.h"
#include "Karto/Settings/Views/SidebarView.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QPainter>
#include <QPropertyAnimation>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <QSplitter>
#include <QStyle>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace karto {

namespace {

constexpr int smallestSidebar = 180;
constexpr int sidebarWidth = 200;
constexpr int largestSidebar = 240;
constexpr int paneSide = 24;
constexpr int scrolledSide = paneSide - look::ringRoom;
constexpr int paneTop = 32;
constexpr int paneBottom = 20 - look::ringRoom;
constexpr int titleGap = 16;
constexpr int bottomGap = 12;
constexpr int revealDuration = 120;

// Keeps its content at the top left and no wider than is good to read. The content brings the room at its
// sides that buttons need for the ring of the focus.
QWidget* column(QWidget* content, int rightMargin) {
    auto* room = new QWidget;
    auto* line = new QHBoxLayout(room);
    line->setContentsMargins(scrolledSide, 0, rightMargin, look::groupGap);
    content->setMaximumWidth(look::paneWidth + 2 * look::ringRoom);
    line->addWidget(content, 1);
    line->addStretch(0);
    return room;
}

// What the keyboard can go to within a widget, in the order of the widgets in their parents.
void addStops(const QWidget& within, std::vector<QWidget*>& stops) {
    for (QObject* child : within.children()) {
        auto* widget = qobject_cast<QWidget*>(child);
        if (widget == nullptr || widget->isWindow() || !widget->isVisible()) {
            continue;
        }
        if (widget->isEnabled() && (widget->focusPolicy() & Qt::TabFocus) == Qt::TabFocus) {
            stops.push_back(widget);
        }
        addStops(*widget, stops);
    }
}

// The bar stands in the pane's margin, so that the column is as wide with a bar as without one.
int marginBesideBar(const QScrollArea& area) {
    return scrolledSide - (area.width() - area.viewport()->width());
}

// Scrolls its column up and down, and is never narrower than that.
class Scroller final : public QScrollArea {
public:
    Scroller() {
        setFrameShape(QFrame::NoFrame);
        setWidgetResizable(true);
        setFocusPolicy(Qt::NoFocus);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setVerticalScrollBar(new ScrollBar);
    }

protected:
    void resizeEvent(QResizeEvent* event) override {
        QScrollArea::resizeEvent(event);
        if (widget() != nullptr) {
            auto* layout = widget()->layout();
            auto margins = layout->contentsMargins();
            margins.setRight(marginBesideBar(*this));
            layout->setContentsMargins(margins);
        }
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == widget() && event->type() == QEvent::LayoutRequest) {
            const int margin = scrolledSide - widget()->layout()->contentsMargins().right();
            setMinimumWidth(widget()->minimumSizeHint().width() + margin);
        }
        return QScrollArea::eventFilter(watched, event);
    }
};

class Hairline final : public QWidget {
public:
    Hairline() { setFixedHeight(1); }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        look::paintHairline(painter, 0, width(), 0, look::colors(palette()).hairline);
    }
};

} // namespace

SettingsView::SettingsView(SettingsModel& model, const GeneralSettings::Services& general, Actions actions)
    : model_(model)
    , general_(general)
    , actions_(std::move(actions))
    , changes_(model.observe([this] { refresh(); })) {
    auto* splitter = new QSplitter(Qt::Horizontal);
    splitter->setHandleWidth(1);
    splitter->setChildrenCollapsible(false);
    sidebar_ = new SidebarView(model);
    sidebar_->setMinimumWidth(smallestSidebar);
    sidebar_->setMaximumWidth(largestSidebar);
    splitter->addWidget(sidebar_);
    splitter->addWidget(makePane());
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({sidebarWidth, smallestSize.width()});
    auto* frame = new QHBoxLayout(this);
    frame->setContentsMargins(0, 0, 0, 0);
    frame->addWidget(splitter);
    // Wherever the keyboard or a screen reader goes. What a pointer is on is seen, and stays under it.
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget* old, QWidget* now) {
        if (old != nullptr && now != nullptr && QApplication::mouseButtons() == Qt::NoButton &&
            scroll_->isAncestorOf(now)) {
            scroll_->ensureWidgetVisible(now);
        }
    });
    refresh();
    sidebar_->setFocus();
}

// What is in it may need more than the smallest size where fonts are large.
QSize SettingsView::minimumSizeHint() const { return QWidget::minimumSizeHint().expandedTo(smallestSize); }

QWidget* SettingsView::makePane() {
    auto* pane = new QWidget;
    auto* lines = new QVBoxLayout(pane);
    lines->setContentsMargins(0, paneTop, 0, paneBottom);
    lines->setSpacing(0);
    auto* head = new QWidget;
    auto* headLines = new QVBoxLayout(head);
    headLines->setContentsMargins(paneSide, 0, paneSide, titleGap);
    headLines->setSpacing(8);
    title_ = new Text(TextRole::title);
    saveError_ = new Note(Symbol::warning, TextRole::error);
    headLines->addWidget(title_);
    headLines->addWidget(saveError_);
    lines->addWidget(head);
    scroll_ = new Scroller;
    lines->addWidget(scroll_, 1);
    lines->addWidget(makeBottomRow());
    return pane;
}

QWidget* SettingsView::makeBottomRow() {
    auto* bottom = new QWidget;
    auto* lines = new QVBoxLayout(bottom);
    lines->setContentsMargins(0, 0, 0, 0);
    lines->setSpacing(bottomGap - look::ringRoom);
    lines->addWidget(new Hairline);
    auto* row = new QHBoxLayout;
    // Buttons keep room for the ring of the focus around them.
    row->setContentsMargins(scrolledSide, 0, scrolledSide, 0);
    row->setSpacing(0);
    undo_ = new Button("Undo");
    redo_ = new Button("Redo");
    revert_ = new Button("Revert to how it was");
    const auto undo = [this] { model_.edit([](LayoutEditor& editor) { editor.undo(); }); };
    const auto redo = [this] { model_.edit([](LayoutEditor& editor) { editor.redo(); }); };
    connect(undo_, &QAbstractButton::clicked, this, undo);
    connect(redo_, &QAbstractButton::clicked, this, redo);
    connect(revert_, &QAbstractButton::clicked, this, [this] { actions_.revert(); });
    connect(new QShortcut(QKeySequence("Ctrl+Z"), this), &QShortcut::activated, this, undo);
    connect(new QShortcut(QKeySequence("Ctrl+Shift+Z"), this), &QShortcut::activated, this, redo);
    undo_->setToolTip("Ctrl+Z");
    redo_->setToolTip("Ctrl+Shift+Z");
    row->addWidget(undo_);
    row->addWidget(redo_);
    row->addStretch();
    row->addWidget(revert_);
    lines->addLayout(row);
    return bottom;
}

QWidget* SettingsView::makeSection() {
    switch (model_.section()) {
    case SettingsSection::general: return new GeneralSectionView(model_, general_);
    case SettingsSection::shortcuts: return new ShortcutsSectionView(model_);
    case SettingsSection::overlay: return new OverlaySectionView(model_, actions_.pickColor);
    case SettingsSection::layout:
        return new LayoutSectionView(
            model_, {.openConfig = actions_.openConfig, .reveal = [this](QWidget& part) { reveal(part); }});
    }
    std::unreachable();
}

void SettingsView::refresh() {
    if (shown_ != model_.section()) {
        shown_ = model_.section();
        const auto text = title(model_.section());
        title_->setText(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
        if (auto* old = scroll_->takeWidget()) {
            // It may hold what asked for another section, and must not outlive the model.
            old->setParent(this);
            old->hide();
            old->deleteLater();
        }
        scroll_->setWidget(column(makeSection(), marginBesideBar(*scroll_)));
        scroll_->widget()->setAutoFillBackground(false);
        scroll_->viewport()->setAutoFillBackground(false);
    }
    const auto& error = model_.status().saveError;
    saveError_->setText(error ? QString::fromStdString(*error) : QString());
    saveError_->setVisible(error.has_value());
    undo_->setEnabled(model_.editor().canUndo());
    redo_->setEnabled(model_.editor().canRedo());
    revert_->setEnabled(model_.status().canRevert);
}

void SettingsView::reveal(QWidget& part) {
    // Rows that were just added are shown and get their places by events.
    QTimer::singleShot(0, &part, [this, &part] {
        if (scroll_->widget()->isAncestorOf(&part)) {
            scrollTo(part);
        }
    });
}

void SettingsView::scrollTo(const QWidget& part) {
    scroll_->widget()->layout()->activate();
    QApplication::sendPostedEvents(scroll_->widget(), QEvent::LayoutRequest);
    auto* bar = scroll_->verticalScrollBar();
    const int middle = part.mapTo(scroll_->widget(), part.rect().center()).y();
    const int target = middle - scroll_->viewport()->height() / 2;
    if (style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) == 0) {
        bar->setValue(target);
        return;
    }
    auto* animation = new QPropertyAnimation(bar, "value", bar);
    animation->setDuration(revealDuration);
    animation->setEndValue(std::clamp(target, bar->minimum(), bar->maximum()));
    animation->start(QAbstractAnimation::DeleteWhenStopped);
}

bool SettingsView::focusNextPrevChild(bool next) {
    std::vector<QWidget*> stops;
    addStops(*this, stops);
    if (stops.empty()) {
        return false;
    }
    const auto current = std::ranges::find(stops, QApplication::focusWidget());
    const auto count = stops.size();
    const auto index = static_cast<std::size_t>(current - stops.begin());
    const auto reason = next ? Qt::TabFocusReason : Qt::BacktabFocusReason;
    // Nowhere yet is before the first and behind the last.
    const auto following =
        current == stops.end() ? (next ? 0 : count - 1) : (index + (next ? 1 : count - 1)) % count;
    stops[following]->setFocus(reason);
    return true;
}

void SettingsView::paintEvent(QPaintEvent* /*event*/) {
    const auto colors = look::colors(palette());
    QPainter painter(this);
    painter.fillRect(rect(), colors.ground);
    painter.fillRect(QRect(sidebar_->mapTo(this, QPoint()), sidebar_->size()), colors.sidebar);
}

} // namespace karto
