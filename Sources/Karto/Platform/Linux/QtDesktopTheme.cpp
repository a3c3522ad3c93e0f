#include "Karto/Platform/Linux/QtDesktopTheme.h"

#include "Karto/Platform/Linux/PortalAccent.h"

#include <QEvent>
#include <QGuiApplication>
#include <QObject>
#include <QPalette>
#include <QScreen>

#include <utility>

namespace karto {

// Reports whatever may change the look.
class QtDesktopTheme::Watch : public QObject {
public:
    explicit Watch(std::function<void()> onChange)
        : onChange_(std::move(onChange)) {
        qApp->installEventFilter(this);
        connect(qApp, &QGuiApplication::primaryScreenChanged, this, [this](QScreen* screen) {
            follow(screen);
            onChange_();
        });
        follow(QGuiApplication::primaryScreen());
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::ApplicationPaletteChange) {
            onChange_();
        }
        return QObject::eventFilter(watched, event);
    }

private:
    // A new scale shows in the size that is left in points.
    void follow(QScreen* screen) {
        if (screen != nullptr) {
            screen->disconnect(this);
            connect(screen, &QScreen::geometryChanged, this, [this] { onChange_(); });
            connect(screen, &QScreen::logicalDotsPerInchChanged, this, [this] { onChange_(); });
        }
    }

    std::function<void()> onChange_;
};

QtDesktopTheme::QtDesktopTheme(SessionBus& bus)
    : portal_(std::make_unique<PortalAccent>(bus, [this] { update(); }))
    , watch_(std::make_unique<Watch>([this] { update(); }))
    , look_(read()) {}

QtDesktopTheme::~QtDesktopTheme() = default;

Registration QtDesktopTheme::observeChanges(std::function<void()> onChange) {
    return observers_.add(std::move(onChange));
}

QtDesktopTheme::Look QtDesktopTheme::read() const {
    const auto* screen = QGuiApplication::primaryScreen();
    const auto highlight = QGuiApplication::palette().color(QPalette::Highlight);
    const RGBColor paletteAccent{
        .red = highlight.redF(), .green = highlight.greenF(), .blue = highlight.blueF()};
    return {.scale = screen != nullptr ? screen->devicePixelRatio() : 1,
            .accent = portal_->color().value_or(paletteAccent)};
}

void QtDesktopTheme::update() {
    if (const auto look = read(); look != look_) {
        look_ = look;
        observers_.notify();
    }
}

} // namespace karto
