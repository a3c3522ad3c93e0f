#include "Karto/Settings/Views/QtSettingsWindow.h"

#include "Karto/Platform/ApplicationHost.h"
#include "Karto/Settings/OverlaySettings.h"
#include "Karto/Settings/Views/SettingsView.h"
#include "Karto/Settings/Views/Spoken.h"

#include <QCloseEvent>
#include <QColorDialog>
#include <QGuiApplication>
#include <QIcon>
#include <QPointer>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>

#include <utility>

namespace karto {

namespace {

constexpr QSize firstSize{760, 620};

// The top-level widget: reports what a person does to it, outside of the handling of the event, because what
// hears of it may delete the window.
class Frame final : public QWidget, public Spoken {
public:
    explicit Frame(SettingsWindow::Events events)
        : events_(std::move(events)) {}

    [[nodiscard]] QAccessible::Role spokenRole() const override { return QAccessible::Window; }

protected:
    void closeEvent(QCloseEvent* event) override {
        event->ignore();
        QTimer::singleShot(0, this, [willClose = events_.willClose] { willClose(); });
    }

    void changeEvent(QEvent* event) override {
        QWidget::changeEvent(event);
        if (event->type() == QEvent::ActivationChange && !isActiveWindow()) {
            events_.resignedKey();
        }
    }

private:
    SettingsWindow::Events events_;
};

RGBColor toRGBColor(const QColor& color) {
    return {.red = color.redF(), .green = color.greenF(), .blue = color.blueF()};
}

class QtSettingsWindow final : public SettingsWindow {
public:
    QtSettingsWindow(SettingsModel& model, Events events, const SettingsWindowNeeds& needs)
        : model_(model)
        , events_(std::move(events))
        , needs_(needs)
        , frame_(new Frame(events_)) {
        Spoken::introduce();
        frame_->setWindowTitle("Karto Settings");
        frame_->setWindowIcon(QIcon::fromTheme("karto"));
        auto* lines = new QVBoxLayout(frame_);
        lines->setContentsMargins(0, 0, 0, 0);
        lines->addWidget(new SettingsView(model, needs.general,
                                          {.revert = events_.revert,
                                           .pickColor = [this] { openColorPanel(); },
                                           .openConfig = [this] { openConfig(); }}));
        frame_->resize(firstSize);
        if (const auto* screen = QGuiApplication::primaryScreen()) {
            frame_->move(screen->availableGeometry().center() - frame_->rect().center());
        }
        frame_->show();
        bringToFront();
    }

    QtSettingsWindow(const QtSettingsWindow&) = delete;
    QtSettingsWindow(QtSettingsWindow&&) = delete;
    QtSettingsWindow& operator=(const QtSettingsWindow&) = delete;
    QtSettingsWindow& operator=(QtSettingsWindow&&) = delete;

    ~QtSettingsWindow() override { delete frame_; }

    void bringToFront() override {
        frame_->setWindowState(frame_->windowState() & ~Qt::WindowMinimized);
        frame_->raise();
        needs_.activate(handle());
    }

    void closeColorPanel() override {
        if (colorPanel_ != nullptr) {
            colorPanel_->close();
        }
    }

    [[nodiscard]] WindowHandle handle() const override {
        return {static_cast<decltype(WindowHandle::id)>(frame_->winId())};
    }

private:
    void openColorPanel() {
        if (colorPanel_ == nullptr) {
            colorPanel_ = new QColorDialog(frame_);
            colorPanel_->setWindowTitle("Borders and numbers");
            colorPanel_->setOptions(QColorDialog::DontUseNativeDialog | QColorDialog::NoButtons);
            QObject::connect(colorPanel_, &QColorDialog::currentColorChanged, frame_,
                             [this](const QColor& color) {
                                 model_.edit([&](LayoutEditor& editor) {
                                     OverlaySettings::setColor(toRGBColor(color), editor);
                                 });
                             });
            QObject::connect(colorPanel_, &QDialog::finished, frame_, [this] {
                colorPanel_->deleteLater();
                colorPanel_ = nullptr;
                events_.colorPanelClosed();
            });
        }
        const auto color = OverlaySettings::appearance(model_.editor().config()).color;
        const QSignalBlocker quiet(colorPanel_);
        colorPanel_->setCurrentColor(QColor(QString::fromStdString(color.hex())));
        colorPanel_->show();
        colorPanel_->raise();
        colorPanel_->activateWindow();
    }

    void openConfig() {
        needs_.host.openFile(needs_.configPath,
                             [host = &needs_.host, path = needs_.configPath](const std::string& problem) {
                                 host->runAlert({.kind = Alert::Kind::warning,
                                                 .message = "The config file could not be opened",
                                                 .informativeText = problem + "\n\nThe file is " + path,
                                                 .buttons = {"OK"}});
                             });
    }

    SettingsModel& model_;
    Events events_;
    SettingsWindowNeeds needs_;
    Frame* frame_;
    QColorDialog* colorPanel_ = nullptr;
};

} // namespace

std::unique_ptr<SettingsWindow> makeQtSettingsWindow(SettingsModel& model, SettingsWindow::Events events,
                                                     const SettingsWindowNeeds& needs) {
    return std::make_unique<QtSettingsWindow>(model, std::move(events), needs);
}

} // namespace karto
