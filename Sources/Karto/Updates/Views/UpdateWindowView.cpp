#include "Karto/Updates/Views/UpdateWindowView.h"

#include "Karto/ProgramIcon.h"
#include "Karto/Settings/Views/Controls.h"
#include "Karto/Settings/Views/Form.h"
#include "Karto/Settings/Views/Look.h"

#include <QApplication>
#include <QBasicTimer>
#include <QElapsedTimer>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QStyle>
#include <QTextDocument>
#include <QTextEdit>
#include <QTimerEvent>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>
#include <utility>

namespace karto {

namespace {

constexpr int iconSide = 64;
constexpr int warningSide = 32;
constexpr int margin = 24;
constexpr int gap = 16;
// What buttons keep free around them for the ring of the focus.
constexpr int ringRoom = 4;
constexpr int columnWidth = 420;
constexpr int mostNotes = 200;
constexpr int notesPadding = 12;
// The steps of the bar, finer than its pixels.
constexpr int wholeProgress = 1'000;

QLabel* textLabel(TextRole role) {
    auto* label = new Text(role);
    label->makeSelectable();
    label->setWordWrap(true);
    label->setFixedWidth(columnWidth);
    return label;
}

// Thin, in the window's colours. While nobody knows how far it is, a part of it wanders.
class ProgressBar final : public QProgressBar {
public:
    ProgressBar() { setTextVisible(false); }

    [[nodiscard]] QSize sizeHint() const override { return {columnWidth, barHeight}; }

    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        const auto colors = look::colors(palette());
        const bool isKnown = maximum() > 0;
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        const auto paint = [&](qreal from, qreal to, const QColor& color) {
            painter.setBrush(color);
            painter.drawRoundedRect(QRectF(from * width(), 0, (to - from) * width(), height()),
                                    barHeight / 2.0, barHeight / 2.0);
        };
        paint(0, 1, look::mixed(colors.ground, colors.text, 0.16));
        const auto from = isKnown ? 0 : place();
        const auto to = isKnown ? qreal(value()) / maximum() : from + wanderingPart;
        if (to > 0) {
            // Round from the beginning.
            paint(from, std::max(to, qreal(barHeight) / width()), colors.accent);
        }
        if (isKnown || !moves()) {
            frames_.stop();
        } else if (!frames_.isActive()) {
            frames_.start(frameMilliseconds, this);
        }
    }

    void timerEvent(QTimerEvent* event) override {
        if (event->timerId() != frames_.timerId()) {
            return QProgressBar::timerEvent(event);
        }
        isVisible() ? update() : frames_.stop();
    }

private:
    static constexpr int barHeight = 6;
    static constexpr qreal wanderingPart = 0.3;
    static constexpr int frameMilliseconds = 40;
    static constexpr qreal wayMilliseconds = 2'400;

    [[nodiscard]] bool moves() const {
        return style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0;
    }

    // Where the wandering part begins; in the middle where nothing shall move.
    [[nodiscard]] qreal place() const {
        const auto phase = moves() ? qreal(since_.elapsed()) / wayMilliseconds : 0.25;
        return (1 - wanderingPart) * (1 - std::cos(2 * std::numbers::pi * phase)) / 2;
    }

    QElapsedTimer since_ = [] {
        QElapsedTimer timer;
        timer.start();
        return timer;
    }();
    QBasicTimer frames_;
};

QString qt(const std::string& utf8) { return QString::fromStdString(utf8); }

} // namespace

UpdateWindowView::UpdateWindowView(std::function<void(UpdateIntent)> onIntent)
    : onIntent_(std::move(onIntent))
    , icon_(new QLabel)
    , heading_(textLabel(TextRole::title))
    , text_(textLabel(TextRole::secondary))
    , notesCard_(new Card)
    , notes_(new QTextEdit)
    , progress_(new ProgressBar)
    , progressText_(textLabel(TextRole::caption))
    , buttons_(new QHBoxLayout) {
    setWindowTitle("Karto Update");
    setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
    auto* column = new QVBoxLayout;
    column->setSpacing(8);
    column->addWidget(heading_);
    column->addWidget(text_);
    column->addWidget(notesCard_);
    column->addWidget(progress_);
    column->addWidget(progressText_);
    column->addStretch();
    auto* content = new QHBoxLayout;
    content->setSpacing(gap);
    content->setContentsMargins(ringRoom, 0, ringRoom, 0);
    content->addWidget(icon_, 0, Qt::AlignTop);
    content->addLayout(column);
    auto* window = new QVBoxLayout(this);
    window->setContentsMargins(margin - ringRoom, margin, margin - ringRoom, margin - ringRoom);
    window->setSpacing(margin - ringRoom);
    window->setSizeConstraint(QLayout::SetFixedSize);
    window->addLayout(content);
    window->addLayout(buttons_);
    buttons_->setSpacing(0);

    notesCard_->add(notes_);
    notes_->setFrameShape(QFrame::NoFrame);
    notes_->setReadOnly(true);
    notes_->setTabChangesFocus(true);
    notes_->setAccessibleName("What is new");
    notes_->setAcceptRichText(false);
    notes_->document()->setDocumentMargin(notesPadding);
    progress_->setAccessibleName("Progress");
}

void UpdateWindowView::tell(const UpdateView& view) {
    const auto before = std::exchange(view_, view);
    heading_->setText(qt(view.heading));
    text_->setText(qt(view.text));
    text_->setVisible(!view.text.empty());
    // The person may be reading.
    if (view.notes != before.notes) {
        notes_->setPlainText(qt(view.notes));
    }
    notesCard_->setVisible(!view.notes.empty());
    progress_->setVisible(view.progress.has_value());
    progress_->setRange(0, view.progress.value_or(0) < 0 ? 0 : wholeProgress);
    progress_->setValue(int(std::lround(wholeProgress * view.progress.value_or(0))));
    progressText_->setText(qt(view.progressText));
    progressText_->setVisible(!view.progressText.empty());
    if (view.buttons != before.buttons) {
        putButtons(view.buttons);
    }
    dress();
    fit();
}

void UpdateWindowView::reject() { onIntent_(UpdateIntent::close); }

bool UpdateWindowView::event(QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange || event->type() == QEvent::StyleChange) {
        dress();
    } else if (event->type() == QEvent::LayoutRequest) {
        fit();
    }
    return QDialog::event(event);
}

void UpdateWindowView::dress() {
    icon_->setPixmap(icon());
    // On the card, whose corners are round.
    auto palette = QApplication::palette();
    palette.setColor(QPalette::Base, Qt::transparent);
    palette.setColor(QPalette::Text, look::colors(palette).text);
    notes_->setPalette(palette);
}

void UpdateWindowView::fit() {
    // Measured on a copy: the text itself keeps to the room that its scroll bar leaves.
    const std::unique_ptr<QTextDocument> copy(notes_->document()->clone());
    copy->setTextWidth(columnWidth);
    notesCard_->setFixedHeight(std::min(int(std::ceil(copy->size().height())), mostNotes));
}

// The program's, with a warning on it when something went wrong.
QPixmap UpdateWindowView::icon() const {
    const auto ratio = devicePixelRatioF();
    auto icon = programIcon(iconSide, ratio);
    if (view_.symbol == UpdateView::Symbol::problem) {
        const auto warning = style()->standardIcon(QStyle::SP_MessageBoxWarning);
        QPainter painter(&icon);
        warning.paint(&painter, iconSide - warningSide, iconSide - warningSide, warningSide, warningSide);
    }
    return icon;
}

void UpdateWindowView::putButtons(const std::vector<UpdateButton>& buttons) {
    while (auto* const item = buttons_->takeAt(0)) {
        if (auto* const button = item->widget()) {
            // It may be the one that is being pressed.
            button->hide();
            button->deleteLater();
        }
        delete item;
    }
    buttons_->addStretch();
    for (std::size_t i = 0; i < buttons.size(); ++i) {
        auto* button = new Button(qt(buttons[i].text));
        // To break off is nothing to ask for.
        const bool isDefault = i == 0 && !view_.progress;
        button->setAutoDefault(isDefault);
        button->setDefault(isDefault);
        connect(button, &QPushButton::clicked, this,
                [this, intent = buttons[i].intent] { onIntent_(intent); });
        // The third one lies apart, at the left.
        buttons_->insertWidget(i < 2 ? 1 : 0, button);
        if (i == 0) {
            button->setFocus();
        }
    }
}

} // namespace karto
