#include "Karto/About/AboutPanel.h"

#include "Karto/ProgramIcon.h"
#include "Karto/Settings/Views/Controls.h"

#include <QEvent>
#include <QLabel>
#include <QVBoxLayout>

namespace karto {

namespace {

constexpr int iconSide = 64;
constexpr int margin = 32;
constexpr int smallestWidth = 280;

} // namespace

AboutPanel::AboutPanel()
    : icon_(new QLabel)
    , name_(new Text(TextRole::title))
    , credits_(new Text(TextRole::caption)) {
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
        text->makeSelectable();
        text->setWordWrap(false);
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
    if (event->type() == QEvent::PaletteChange) {
        dress();
    }
    QDialog::changeEvent(event);
}

void AboutPanel::dress() { icon_->setPixmap(programIcon(iconSide, devicePixelRatioF())); }

} // namespace karto
