#include "Karto/Updates/UpdateWindowView.h"

#include "Karto/Drawing/WindowLook.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QStyle>
#include <QTextDocument>
#include <QTextEdit>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <utility>

namespace karto {

namespace {

constexpr int iconSide = 64;
constexpr int warningSide = 32;
constexpr int margin = 24;
constexpr int gap = 16;
constexpr int buttonHeight = 32;
constexpr int columnWidth = 420;
constexpr int mostNotes = 200;
constexpr int notesPadding = 8;
// The steps of the bar, finer than its pixels.
constexpr int wholeProgress = 1'000;

QLabel* textLabel() {
    auto* label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setFixedWidth(columnWidth);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setFocusPolicy(Qt::NoFocus);
    return label;
}

QString text(const std::string& utf8) { return QString::fromStdString(utf8); }

} // namespace

UpdateWindowView::UpdateWindowView(std::function<void(UpdateIntent)> onIntent)
    : onIntent_(std::move(onIntent))
    , icon_(new QLabel)
    , heading_(textLabel())
    , text_(textLabel())
    , notes_(new QTextEdit)
    , progress_(new QProgressBar)
    , progressText_(textLabel())
    , buttons_(new QHBoxLayout) {
    setWindowTitle("Karto Update");
    setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
    auto* column = new QVBoxLayout;
    column->setSpacing(8);
    column->addWidget(heading_);
    column->addWidget(text_);
    column->addWidget(notes_);
    column->addWidget(progress_);
    column->addWidget(progressText_);
    column->addStretch();
    auto* content = new QHBoxLayout;
    content->setSpacing(gap);
    content->addWidget(icon_, 0, Qt::AlignTop);
    content->addLayout(column);
    auto* window = new QVBoxLayout(this);
    window->setContentsMargins(margin, margin, margin, margin);
    window->setSpacing(margin);
    window->setSizeConstraint(QLayout::SetFixedSize);
    window->addLayout(content);
    window->addLayout(buttons_);
    buttons_->setSpacing(8);

    notes_->setReadOnly(true);
    notes_->setTabChangesFocus(true);
    notes_->setAccessibleName("What is new");
    notes_->setAcceptRichText(false);
    notes_->document()->setDocumentMargin(notesPadding);
    progress_->setTextVisible(false);
    progress_->setAccessibleName("Progress");
}

void UpdateWindowView::tell(const UpdateView& view) {
    const auto before = std::exchange(view_, view);
    heading_->setText(text(view.heading));
    text_->setText(text(view.text));
    text_->setVisible(!view.text.empty());
    // The person may be reading.
    if (view.notes != before.notes) {
        notes_->setPlainText(text(view.notes));
    }
    notes_->setVisible(!view.notes.empty());
    progress_->setVisible(view.progress.has_value());
    progress_->setRange(0, view.progress.value_or(0) < 0 ? 0 : wholeProgress);
    progress_->setValue(int(std::lround(wholeProgress * view.progress.value_or(0))));
    progressText_->setText(text(view.progressText));
    progressText_->setVisible(!view.progressText.empty());
    if (view.buttons != before.buttons) {
        putButtons(view.buttons);
    }
    dress();
}

void UpdateWindowView::reject() { onIntent_(UpdateIntent::close); }

void UpdateWindowView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ApplicationFontChange) {
        dress();
    }
    QDialog::changeEvent(event);
}

void UpdateWindowView::dress() {
    // New colours and fonts are changes as well.
    if (std::exchange(isDressing_, true)) {
        return;
    }
    icon_->setPixmap(icon());
    heading_->setFont(drawing::titleFont());
    text_->setPalette(drawing::secondaryPalette());
    progressText_->setFont(drawing::captionFont());
    progressText_->setPalette(drawing::secondaryPalette());
    for (auto* label : {heading_, text_, progressText_}) {
        // A window of one size asks for no height by width.
        label->setFixedHeight(std::max(label->heightForWidth(columnWidth), 0));
    }
    const int frame = 2 * notes_->frameWidth();
    notes_->document()->setTextWidth(columnWidth - frame);
    notes_->setFixedHeight(std::min(int(std::ceil(notes_->document()->size().height())) + frame, mostNotes));
    isDressing_ = false;
}

// The program's, with a warning on it when something went wrong.
QPixmap UpdateWindowView::icon() const {
    const auto ratio = devicePixelRatioF();
    auto icon = drawing::programIcon(iconSide, ratio);
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
        auto* button = new QPushButton(text(buttons[i].text));
        button->setAutoDefault(i == 0);
        button->setDefault(i == 0);
        button->setMinimumSize(button->sizeHint().width() + gap, buttonHeight);
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
