#include "Karto/Settings/Views/Controls.h"

#include "Karto/Settings/Views/Look.h"

#include <QApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QTimer>
#include <QWheelEvent>

#include <utility>

namespace karto {

namespace {

using look::ringRoom;
constexpr int switchWidth = 40;
constexpr int switchHeight = 22;
constexpr int buttonHeight = 30;
constexpr int buttonPadding = 14;
constexpr int symbolGap = 8;
constexpr int leastCharacters = 8;
constexpr qreal grooveHeight = 4;
constexpr qreal knobRadius = 8;
constexpr int scrollBarWidth = 12;

QFont fontOf(TextRole role) {
    switch (role) {
    case TextRole::title: return look::titleFont();
    case TextRole::head: return look::semiboldFont();
    case TextRole::caption: return look::captionFont();
    case TextRole::body:
    case TextRole::secondary:
    case TextRole::error: return {};
    }
    std::unreachable();
}

QColor colorOf(TextRole role, const look::Colors& colors) {
    switch (role) {
    case TextRole::title:
    case TextRole::head:
    case TextRole::body: return colors.text;
    case TextRole::secondary:
    case TextRole::caption: return colors.secondary;
    case TextRole::error: return colors.error;
    }
    std::unreachable();
}

// The ground of a control that a pointer may hover over or press.
QColor ground(const QAbstractButton& button, const look::Colors& colors, const QColor& resting) {
    if (button.isDown()) {
        return look::mixed(resting, colors.text, 0.16);
    }
    return button.underMouse() && button.isEnabled() ? look::mixed(resting, colors.text, 0.07) : resting;
}

} // namespace

Text::Text(TextRole role, const QString& text, QWidget* parent)
    : QLabel(text, parent)
    , role_(role) {
    setTextFormat(Qt::PlainText);
    setWordWrap(role != TextRole::head && role != TextRole::title);
    adopt();
}

void Text::makeSelectable() {
    setTextInteractionFlags(Qt::TextSelectableByMouse);
    setFocusPolicy(Qt::NoFocus);
    // What draws such text has the desktop's colours until it hears of others.
    QEvent change(QEvent::PaletteChange);
    QCoreApplication::sendEvent(this, &change);
}

void Text::changeEvent(QEvent* event) {
    QLabel::changeEvent(event);
    const bool isNews = event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange ||
                        event->type() == QEvent::ApplicationFontChange;
    if (isNews && !isAdopting_) {
        adopt();
    }
}

void Text::setElided() {
    isElided_ = true;
    setWordWrap(false);
}

// A paragraph of one width is as high as that makes it.
QSize Text::sizeHint() const {
    const bool isColumn = wordWrap() && minimumWidth() == maximumWidth();
    return isColumn ? QSize(minimumWidth(), heightForWidth(minimumWidth())) : QLabel::sizeHint();
}

QSize Text::minimumSizeHint() const {
    const auto whole = QLabel::minimumSizeHint();
    return isElided_ ? QSize(std::min(whole.width(), fontMetrics().averageCharWidth() * leastCharacters),
                             whole.height())
                     : whole;
}

void Text::paintEvent(QPaintEvent* event) {
    if (!isElided_) {
        QLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    painter.drawText(rect(), Qt::AlignVCenter, fontMetrics().elidedText(text(), Qt::ElideMiddle, width()));
}

void Text::adopt() {
    isAdopting_ = true;
    auto palette = this->palette();
    // The parent may hear of new colours after its children.
    const auto colors = look::colors(QApplication::palette());
    palette.setColor(QPalette::WindowText, colorOf(role_, colors));
    palette.setColor(QPalette::Disabled, QPalette::WindowText, colors.disabled);
    setPalette(palette);
    setFont(fontOf(role_));
    isAdopting_ = false;
}

Note::Note(std::optional<Symbol> symbol, TextRole role, const QString& text, QWidget* parent)
    : QWidget(parent)
    , role_(role)
    , text_(new Text(role, text, this)) {
    auto* layout = new QHBoxLayout(this);
    layout->setSpacing(0);
    layout->addWidget(text_, 1);
    setSymbol(symbol);
}

void Note::setSymbol(std::optional<Symbol> symbol) {
    symbol_ = symbol;
    layout()->setContentsMargins(symbol ? look::symbolSide + symbolGap : 0, 0, 0, 0);
    update();
}

void Note::paintEvent(QPaintEvent* /*event*/) {
    if (symbol_) {
        QPainter painter(this);
        const int line = QFontMetrics(text_->font()).height();
        painter.drawPixmap(QPoint(0, contentsMargins().top() + (line - look::symbolSide) / 2),
                           symbolPixmap(*symbol_, look::symbolSide, devicePixelRatioF(),
                                        colorOf(role_, look::colors(palette()))));
    }
}

Switch::Switch(QWidget* parent)
    : QCheckBox(parent) {
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::ArrowCursor);
}

QSize Switch::sizeHint() const { return {switchWidth + 2 * ringRoom, switchHeight + 2 * ringRoom}; }

bool Switch::hitButton(const QPoint& position) const { return rect().contains(position); }

void Switch::paintEvent(QPaintEvent* /*event*/) {
    const auto colors = look::colors(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF track((width() - switchWidth) / 2.0, (height() - switchHeight) / 2.0, switchWidth,
                       switchHeight);
    constexpr qreal radius = switchHeight / 2.0;
    const auto off = look::mixed(colors.card, colors.text, 0.26);
    auto fill = ground(*this, colors, isChecked() ? colors.accent : off);
    auto knob = isChecked() ? colors.onAccent : QColor(Qt::white);
    if (!isEnabled()) {
        fill = look::mixed(fill, colors.card, 0.5);
        knob = look::mixed(knob, colors.card, 0.4);
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(track, radius, radius);
    painter.setBrush(knob);
    const qreal x = isChecked() ? track.right() - radius : track.left() + radius;
    painter.drawEllipse(QPointF(x, track.center().y()), radius - 3, radius - 3);
    if (hasFocus()) {
        look::paintFocusRing(painter, track, radius, colors.accent);
    }
}

Button::Button(const QString& text, QWidget* parent)
    : QPushButton(text, parent) {
    setAttribute(Qt::WA_Hover);
    setAutoDefault(false);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

Button::Button(const QString& text, Symbol symbol, QWidget* parent)
    : Button(text, parent) {
    symbol_ = symbol;
}

QSize Button::sizeHint() const {
    const int symbol = symbol_ ? look::symbolSide + symbolGap : 0;
    const int arrow = menu() != nullptr ? look::symbolSide : 0;
    const int content = fontMetrics().horizontalAdvance(text()) + symbol + arrow;
    const int height = std::max(buttonHeight, fontMetrics().height() + 12);
    return {content + 2 * (buttonPadding + ringRoom), height + 2 * ringRoom};
}

void Button::paintEvent(QPaintEvent* /*event*/) {
    const auto colors = look::colors(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF area = QRectF(rect()).adjusted(ringRoom, ringRoom, -ringRoom, -ringRoom);
    painter.setPen(QPen(colors.hairline, 1));
    painter.setBrush(ground(*this, colors, isDefault() ? colors.accent : colors.control));
    painter.drawRoundedRect(area.adjusted(0.5, 0.5, -0.5, -0.5), look::controlRadius, look::controlRadius);
    const auto enabledColor = isDefault() ? colors.onAccent : colors.text;
    const auto color = isEnabled() ? enabledColor : colors.disabled;
    auto content = area.adjusted(buttonPadding, 0, -buttonPadding, 0);
    if (symbol_) {
        painter.drawPixmap(QPointF(content.left(), content.center().y() - look::symbolSide / 2.0),
                           symbolPixmap(*symbol_, look::symbolSide, devicePixelRatioF(), color));
        content.setLeft(content.left() + look::symbolSide + symbolGap);
    }
    if (menu() != nullptr) {
        const QPointF tip(content.right() - 4, content.center().y() + 2);
        painter.setPen(QPen(color, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.setBrush(Qt::NoBrush);
        painter.drawPolyline(QPolygonF{tip + QPointF(-4, -4), tip, tip + QPointF(4, -4)});
        content.setRight(content.right() - look::symbolSide);
    }
    painter.setPen(color);
    painter.drawText(content, Qt::AlignCenter | Qt::TextShowMnemonic, text());
    if (hasFocus()) {
        look::paintFocusRing(painter, area, look::controlRadius, colors.accent);
    }
}

MenuButton::MenuButton(const QString& text, QWidget* parent)
    : Button({}, parent) {
    // Told sooner, a screen reader would take it for any other button for good.
    setText(text);
    setMenu(new QMenu(this));
    setAccessibleName(text);
}

std::vector<Spoken::Action> MenuButton::spokenActions() {
    // Who asks for the menu is not to wait until it is closed.
    const auto open = [this] { QTimer::singleShot(0, this, [this] { showMenu(); }); };
    std::vector<Action> actions{
        {.name = QAccessibleActionInterface::showMenuAction(), .keys = "Space", .perform = open}};
    for (auto* item : menu()->actions()) {
        actions.push_back({.name = item->text(), .keys = {}, .perform = [item] { item->trigger(); }});
    }
    return actions;
}

IconButton::IconButton(Symbol symbol, const QString& help, QWidget* parent)
    : QAbstractButton(parent)
    , symbol_(symbol) {
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    set(symbol, help);
}

void IconButton::set(Symbol symbol, const QString& help) {
    symbol_ = symbol;
    setToolTip(help);
    setAccessibleName(help);
    update();
}

QSize IconButton::sizeHint() const { return {look::iconButtonSide, look::iconButtonSide}; }

void IconButton::paintEvent(QPaintEvent* /*event*/) {
    const auto colors = look::colors(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF area(rect());
    if (isEnabled() && (underMouse() || isDown())) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(ground(*this, colors, colors.card));
        painter.drawRoundedRect(area, look::controlRadius, look::controlRadius);
    }
    const QPointF corner = area.center() - QPointF(look::symbolSide, look::symbolSide) / 2;
    painter.drawPixmap(corner, symbolPixmap(symbol_, look::symbolSide, devicePixelRatioF(),
                                            isEnabled() ? colors.text : colors.disabled));
    if (hasFocus()) {
        look::paintFocusRing(painter, area.adjusted(4, 4, -4, -4), look::controlRadius - 2, colors.accent);
    }
}

Slider::Slider(QWidget* parent)
    : QSlider(Qt::Horizontal, parent) {
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
}

void Slider::setScale(double first, double step) {
    scaleFirst_ = first;
    scaleStep_ = step;
}

std::vector<Spoken::Action> Slider::spokenActions() {
    const auto action = [this](const QString& name, const QString& keys, SliderAction move) {
        return Action{.name = name, .keys = keys, .perform = [this, move] { triggerAction(move); }};
    };
    return {action(QAccessibleActionInterface::increaseAction(), "Right", SliderSingleStepAdd),
            action(QAccessibleActionInterface::decreaseAction(), "Left", SliderSingleStepSub)};
}

std::optional<Spoken::Value> Slider::spokenValue() const {
    const auto at = [this](int position) { return scaleFirst_ + position * scaleStep_; };
    return Value{.now = at(value()), .least = at(minimum()), .most = at(maximum()), .step = scaleStep_};
}

void Slider::setSpokenValue(double value) { setValue(qRound((value - scaleFirst_) / scaleStep_)); }

QSize Slider::sizeHint() const { return {200, qRound(2 * knobRadius) + 2 * ringRoom + 2}; }

void Slider::paintEvent(QPaintEvent* /*event*/) {
    const auto colors = look::colors(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const qreal left = knobRadius + ringRoom;
    const qreal right = width() - left;
    const qreal middle = height() / 2.0;
    const int range = std::max(1, maximum() - minimum());
    const qreal x = left + (right - left) * (value() - minimum()) / range;
    const auto groove = [&](qreal from, qreal to, const QColor& color) {
        painter.setBrush(color);
        painter.drawRoundedRect(QRectF(from, middle - grooveHeight / 2, to - from, grooveHeight),
                                grooveHeight / 2, grooveHeight / 2);
    };
    groove(left, right, look::mixed(colors.card, colors.text, 0.2));
    groove(left, x, isEnabled() ? colors.accent : colors.disabled);
    painter.setPen(QPen(look::mixed(colors.card, colors.text, 0.3), 1));
    painter.setBrush(isSliderDown() ? look::mixed(Qt::white, colors.accent, 0.2) : QColor(Qt::white));
    painter.drawEllipse(QPointF(x, middle), knobRadius - 0.5, knobRadius - 0.5);
    if (hasFocus()) {
        look::paintFocusRing(
            painter,
            QRectF(x - knobRadius + 1, middle - knobRadius + 1, 2 * knobRadius - 2, 2 * knobRadius - 2),
            knobRadius - 1, colors.accent);
    }
}

void Slider::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        setSliderDown(true);
        setSliderPosition(valueAt(event->position().x()));
    }
}

void Slider::mouseMoveEvent(QMouseEvent* event) {
    if (isSliderDown()) {
        setSliderPosition(valueAt(event->position().x()));
    }
}

void Slider::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        setSliderDown(false);
    }
}

void Slider::wheelEvent(QWheelEvent* event) { event->ignore(); }

// What goes away is let go.
void Slider::hideEvent(QHideEvent* event) {
    QSlider::hideEvent(event);
    setSliderDown(false);
}

int Slider::valueAt(qreal x) const {
    const qreal left = knobRadius + ringRoom;
    const qreal span = width() - 2 * left;
    return QStyle::sliderValueFromPosition(minimum(), maximum(), qRound(x - left), qRound(span));
}

ScrollBar::ScrollBar(QWidget* parent)
    : QScrollBar(Qt::Vertical, parent) {
    setAttribute(Qt::WA_Hover);
}

QSize ScrollBar::sizeHint() const { return {scrollBarWidth, 3 * scrollBarWidth}; }

void ScrollBar::paintEvent(QPaintEvent* /*event*/) {
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRectF held =
        style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
    const auto colors = look::colors(palette());
    const bool isMeant = underMouse() || isSliderDown();
    const qreal inset = isMeant ? 2 : 3;
    const QRectF bar = held.adjusted(inset, 2, -inset, -2);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(look::mixed(colors.ground, colors.text, isMeant ? 0.5 : 0.3));
    painter.drawRoundedRect(bar, bar.width() / 2, bar.width() / 2);
}

} // namespace karto
