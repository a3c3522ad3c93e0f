#include "Karto/Platform/Linux/QtApplicationHost.h"

#include "Karto/Platform/Linux/Programs.h"
#include "Karto/Platform/Linux/SessionBus.h"

#include <QFile>
#include <QIcon>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include <sys/signalfd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <tuple>
#include <vector>

namespace karto {

namespace {

constexpr std::array settingsPrograms{"gnome-control-center", "systemsettings",      "xfce4-settings-manager",
                                      "cinnamon-settings",    "mate-control-center", "lxqt-config"};

constexpr std::array iconThemes{"Adwaita", "breeze", "Papirus", "gnome", "oxygen", "Tango"};

// For a desktop whose own theme, if it has one, lacks an icon.
void fallBackToInstalledIconTheme() {
    const auto isInstalled = [](const char* theme) {
        return std::ranges::any_of(QIcon::themeSearchPaths(), [=](const QString& folder) {
            return QFile::exists(folder + '/' + theme + "/index.theme");
        });
    };
    const auto* const theme = std::ranges::find_if(iconThemes, isInstalled);
    if (theme != iconThemes.end()) {
        QIcon::setFallbackThemeName(*theme);
    }
}

// Finding it takes some milliseconds, which the start without a window need not wait for.
void findWindowIcon() { QApplication::setWindowIcon(QIcon::fromTheme("karto")); }

sigset_t endings() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGHUP);
    sigaddset(&set, SIGINT);
    sigaddset(&set, SIGTERM);
    return set;
}

constexpr auto invisible = "offscreen";

void choosePlatform(QtApplicationHost::Session session) {
    // On X11, windows of this program are placed in X pixels, which no other platform of the toolkit knows.
    const bool isX11 = session == QtApplicationHost::Session::x11;
    qputenv("QT_QPA_PLATFORM", isX11 ? "xcb" : QByteArray("wayland;") + invisible);
}

// Delivers the signals that end a process to a descriptor instead of ending the process on the spot.
int openSignalDescriptor() {
    const sigset_t set = endings();
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
    return signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK);
}

// What has to be done before the toolkit starts.
int prepare(QtApplicationHost::Session session) {
    choosePlatform(session);
    // A saved session would start Karto once more, beside the person's own choice to start it at login.
    qunsetenv("SESSION_MANAGER");
    return openSignalDescriptor();
}

} // namespace

QtApplicationHost::QtApplicationHost(Session session, int& argumentCount, char** arguments)
    : signals_(prepare(session))
    , application_(argumentCount, arguments)
    , endings_(descriptors_.watch(signals_.number(), [] { quit(0); })) {
    QApplication::setApplicationName("Karto");
    QApplication::setDesktopFileName("karto");
    QApplication::setQuitOnLastWindowClosed(false);
    fallBackToInstalledIconTheme();
    QObject::connect(&application_, &QCoreApplication::aboutToQuit, &application_,
                     [this] { terminationObservers_.notify(); });
}

QtApplicationHost::~QtApplicationHost() = default;

bool QtApplicationHost::isVisible() { return QGuiApplication::platformName() != invisible; }

QtApplicationHost::LastDeletions::~LastDeletions() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

std::size_t QtApplicationHost::runAlert(const Alert& alert) {
    findWindowIcon();
    hideSilentBus();
    const auto message = QString::fromStdString(alert.message).toHtmlEscaped();
    const auto icon = alert.kind == Alert::Kind::warning ? QMessageBox::Warning : QMessageBox::Information;
    QMessageBox box(icon, "Karto", QString("<b>%1</b>").arg(message));
    box.setInformativeText(QString::fromStdString(alert.informativeText));
    std::vector<QPushButton*> buttons;
    buttons.reserve(alert.buttons.size());
    for (const auto& title : alert.buttons) {
        buttons.push_back(box.addButton(QString::fromStdString(title), QMessageBox::ActionRole));
    }
    box.setDefaultButton(buttons.front());
    box.setEscapeButton(buttons.back());
    QTimer::singleShot(0, &box, [this, &box] { present(box); });
    box.exec();
    for (std::size_t i = 0; i < buttons.size(); ++i) {
        if (box.clickedButton() == buttons[i]) {
            return i;
        }
    }
    return buttons.size() - 1;
}

void QtApplicationHost::print(const std::string& text) {
    std::puts(text.c_str());
    std::fflush(stdout);
}

Registration QtApplicationHost::observeTermination(std::function<void()> onTermination) {
    return terminationObservers_.add(std::move(onTermination));
}

void QtApplicationHost::openFile(const std::string& path, std::function<void(const std::string&)> onFailure) {
    // It may run as long as the application that it has opened.
    const bool isStarted =
        startProgram({.name = "xdg-open", .arguments = {path}}, [onFailure](std::optional<int> status) {
            if (status && *status != 0) {
                onFailure("This desktop has no application for such files.");
            }
        });
    if (!isStarted) {
        onFailure("Nothing here knows which application opens a file: xdg-open is not installed.");
    }
}

void QtApplicationHost::openDesktopSettings() {
    std::ignore = std::ranges::any_of(settingsPrograms, [](const char* program) {
        return startProgram({.name = program, .arguments = {}});
    });
}

void QtApplicationHost::showAbout(const About& about) {
    if (findAboutPanel_) {
        present(findAboutPanel_(about));
    }
}

void QtApplicationHost::present(QWidget& window) const {
    window.show();
    window.raise();
    if (activate_) {
        activate_(static_cast<std::uint32_t>(window.winId()));
    }
}

void QtApplicationHost::terminate() { quit(0); }

int QtApplicationHost::run() {
    findWindowIcon();
    hideSilentBus();
    return QApplication::exec();
}

void QtApplicationHost::hideSilentBus() {
    if (bus_ != nullptr) {
        bus_->hideWhenSilent();
    }
}

void QtApplicationHost::quit(int exitStatus) { QApplication::exit(exitStatus); }

} // namespace karto
