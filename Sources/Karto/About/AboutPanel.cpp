#include "Karto/About/AboutPanel.h"

#include "Karto/Drawing/QtImages.h"
#include "Karto/MenuBarIcon.h"

#include <QApplication>
#include <QEvent>
#include <QIcon>
#include <QLabel>
#include <QLinearGradient>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>

namespace karto {

namespace {

constexpr int iconSide = 64;
constexpr int margin = 32;
constexpr int smallestWidth = 280;
constexpr int nameSize = 20;
constexpr int smallestText = 11;
constexpr double captionScale = 0.85;
constexpr double secondaryStrength = 0.64;

QColor mixed(const QColor& color, const QColor& ground, double strength) {
    const auto channel = [strength](float above, float below) {
        return float(above * strength + below * (1 - strength));
    };
    return QColor::fromRgbF(channel(color.redF(), ground.redF()), channel(color.greenF(), ground.greenF()),
                            channel(color.blueF(), ground.blueF()));
}

// The program's own drawing on a tile in the accent.
QPixmap drawnIcon(const QPalette& palette, double ratio) {
    const int side = qRound(iconSide * ratio);
    const int inset = side / 5;
    const auto accent = palette.color(QPalette::Highlight);
    const auto ink = palette.color(QPalette::HighlightedText);
    const auto zones = MenuBarIcon::draw(
        {.side = side - 2 * inset, .ink = {.red = ink.redF(), .green = ink.greenF(), .blue = ink.blueF()}});
    QPixmap tile(side, side);
    tile.fill(Qt::transparent);
    QPainter painter(&tile);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient light(0, 0, 0, side);
    light.setColorAt(0, accent.lighter(112));
    light.setColorAt(1, accent.darker(108));
    painter.setPen(Qt::NoPen);
    painter.setBrush(light);
    const double radius = side * 0.22;
    painter.drawRoundedRect(QRectF(0, 0, side, side), radius, radius);
    painter.drawImage(inset, inset, drawing::view(zones));
    painter.end();
    tile.setDevicePixelRatio(ratio);
    return tile;
}

} // namespace

AboutPanel::AboutPanel()
    : icon_(new QLabel)
    , name_(new QLabel)
    , credits_(new QLabel) {
    setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(0);
    column->setSizeConstraint(QLayout::SetFixedSize);
    column->addWidget(icon_, 0, Qt::AlignHCenter);
    column->addSpacing(16);
    column->addWidget(name_, 0, Qt::AlignHCenter);
    column->addSpacing(4);
    column->addWidget(credits_, 0, Qt::AlignHCenter);
    column->addStrut(smallestWidth - 2 * margin);
    for (auto* text : {name_, credits_}) {
        text->setTextFormat(Qt::PlainText);
        text->setTextInteractionFlags(Qt::TextSelectableByMouse);
        text->setFocusPolicy(Qt::NoFocus);
    }
    dress();
}

void AboutPanel::tell(const About& about) {
    const auto name = QString::fromStdString(about.applicationName);
    setWindowTitle("About " + name);
    icon_->setAccessibleName(name);
    name_->setText(name);
    credits_->setText(QString::fromStdString(about.credits));
    dress();
}

void AboutPanel::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ApplicationFontChange) {
        dress();
    }
    QDialog::changeEvent(event);
}

void AboutPanel::dress() {
    // New colours and fonts are changes as well.
    if (isDressing_) {
        return;
    }
    isDressing_ = true;
    const auto system = QApplication::font();
    auto nameFont = system;
    nameFont.setPixelSize(nameSize);
    nameFont.setWeight(QFont::DemiBold);
    name_->setFont(nameFont);
    auto creditsFont = system;
    creditsFont.setPixelSize(std::max(smallestText, qRound(QFontInfo(system).pixelSize() * captionScale)));
    credits_->setFont(creditsFont);
    auto colors = QApplication::palette();
    colors.setColor(QPalette::WindowText, mixed(colors.color(QPalette::WindowText),
                                                colors.color(QPalette::Window), secondaryStrength));
    credits_->setPalette(colors);
    const auto ratio = devicePixelRatioF();
    const auto installed = QIcon::fromTheme("karto").pixmap({iconSide, iconSide}, ratio);
    icon_->setPixmap(installed.isNull() ? drawnIcon(QApplication::palette(), ratio) : installed);
    isDressing_ = false;
}

} // namespace karto
