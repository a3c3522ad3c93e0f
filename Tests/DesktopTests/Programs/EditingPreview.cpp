// Owns a preview on which zones are edited, below a window of its own that stands for the settings, and
// prints what becomes of the zones: editing-preview CONFIGURATION X Y WIDTH HEIGHT In the window the key U
// undoes, R does it again, and closing it ends the preview.

#include "Karto/Adapters/DisplayRegistry.h"
#include "Karto/Adapters/ModifierMonitor.h"
#include "Karto/Overlay/OverlayController.h"
#include "Karto/Platform/Linux/DesktopEntries.h"
#include "Karto/Platform/Linux/QtApplicationHost.h"
#include "Karto/Platform/Linux/QtDesktopTheme.h"
#include "Karto/Platform/Linux/QtScheduler.h"
#include "Karto/Platform/Linux/SessionBus.h"
#include "Karto/Platform/X11/Displays/Screens.h"
#include "Karto/Platform/X11/Keyboard/ModifierEvents.h"
#include "Karto/Platform/X11/Server/Connection.h"
#include "Karto/Platform/X11/Server/WindowManager.h"
#include "Karto/Platform/X11/Stage/OverlayStage.h"
#include "Karto/Platform/X11/Windows/Accessibility.h"
#include "Karto/Platform/X11/Windows/ApplicationActivity.h"
#include "KartoCore/ConfigReading.h"
#include "KartoCore/LayoutEditor.h"
#include "KartoCore/TreeOrdering.h"
#include "Support/FixedConfig.h"
#include "Support/MemoryCheckLog.h"
#include "Support/Trees.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QWidget>

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <string>
#include <tuple>

namespace karto {

namespace {

class SettingsWindow : public QWidget {
public:
    SettingsWindow(const QRect& area, std::function<void(int)> onKey, std::function<void()> onClose)
        : onKey_(std::move(onKey))
        , onClose_(std::move(onClose)) {
        setWindowTitle("Settings");
        setGeometry(area);
    }

protected:
    void keyPressEvent(QKeyEvent* event) override { onKey_(event->key()); }

    void closeEvent(QCloseEvent* event) override {
        onClose_();
        event->accept();
    }

private:
    std::function<void(int)> onKey_;
    std::function<void()> onClose_;
};

class Preview {
public:
    Preview(OverlayController& overlay, KartoConfig config)
        : overlay_(overlay)
        , editor_(std::move(config)) {}

    void begin(WindowHandle settings) {
        overlay_.beginPreview(
            settings,
            {.onZoneClick = [this](const DisplayInfo& display,
                                   std::optional<int> number) { select(display, number); },
             .onEdit = [this](const DisplayInfo& display, const ZoneEdit& edit) { apply(display, edit); }});
        show("begin");
    }

    void end() {
        overlay_.endPreview();
        report("end");
    }

    void show(const std::string& reason) {
        overlay_.updatePreview(editor_.config(), selected_);
        report(reason);
    }

    void key(int key) {
        if (key == Qt::Key_U) {
            editor_.undo();
            show("undo");
        } else if (key == Qt::Key_R) {
            editor_.redo();
            show("redo");
        }
    }

private:
    void select(const DisplayInfo& display, std::optional<int> number) {
        selected_ = number;
        show("click " + display.name + " " + (number ? std::to_string(*number) : "none"));
    }

    void apply(const DisplayInfo& display, const ZoneEdit& edit) {
        const auto orientation = display.orientation();
        std::string name = "commit";
        if (const auto* split = std::get_if<ZoneEdits::Split>(&edit)) {
            editor_.split(split->path, display.name, orientation, split->axis);
            name = "split";
        } else if (const auto* remove = std::get_if<ZoneEdits::Remove>(&edit)) {
            editor_.removeZone(remove->path, display.name, orientation);
            name = "remove";
        } else if (const auto* drag = std::get_if<ZoneEdits::DragBoundary>(&edit)) {
            editor_.moveBoundaryLive(drag->path, display.name, orientation, drag->to);
            name = "drag";
        } else {
            editor_.commitBoundaryDrag();
        }
        show(name + " " + display.name);
    }

    // For example "drag Studio; (0.5 . | .); (0.5 . / .); 1 of 2": why, every layout, and the state of the
    // history that is the last recorded.
    void report(const std::string& reason) const {
        std::ostringstream line;
        line << reason;
        for (const auto& layout : editor_.config().displays) {
            line << "; " << layout.root;
        }
        const auto& history = editor_.history();
        line << "; " << history.currentIndex() + 1 << " of " << history.states().size() << '\n';
        std::cout << line.str() << std::flush;
    }

    OverlayController& overlay_;
    LayoutEditor editor_;
    std::optional<int> selected_;
};

KartoConfig configurationIn(const char* path) {
    std::ifstream file(path, std::ios::binary);
    return readConfig(std::string(std::istreambuf_iterator(file), {})).value();
}

QRect areaOf(char** numbers) {
    return {std::atoi(numbers[0]), std::atoi(numbers[1]), std::atoi(numbers[2]), std::atoi(numbers[3])};
}

} // namespace

} // namespace karto

int main(int argumentCount, char** arguments) {
    using namespace karto;

    if (argumentCount != 6) {
        std::cerr << "usage: editing-preview CONFIGURATION X Y WIDTH HEIGHT\n";
        return EXIT_FAILURE;
    }
    auto config = configurationIn(arguments[1]);
    const QRect area = areaOf(arguments + 2);

    const auto connection = x11::Connection::open().value();
    QtApplicationHost host(QtApplicationHost::Session::x11, argumentCount, arguments);
    QtScheduler scheduler;
    QtDescriptorWatch descriptors;
    x11::WindowManager windowManager(*connection);
    DesktopEntries installed(DesktopEntries::Places::ofSession());
    x11::Accessibility accessibility(
        *connection, windowManager, scheduler, installed,
        {.ownProcess = getpid(), .isWayland = false, .openSettings = QtApplicationHost::openDesktopSettings});
    x11::Screens screens(*connection, scheduler);
    x11::ModifierEvents modifierEvents(*connection);
    x11::ApplicationActivity activity(*connection, accessibility, scheduler, getpid());
    SessionBus bus(descriptors);
    QtDesktopTheme theme(bus);
    x11::OverlayStage stage(*connection, windowManager, modifierEvents, theme, scheduler);

    const testing::FixedConfig saved;
    testing::MemoryCheckLog log;
    DisplayRegistry displays(screens);
    OverlayPainter painter;
    OverlayController overlay(
        {.config = saved,
         .displays = displays,
         .screens = screens,
         .stage = stage,
         .activity = activity,
         .scheduler = scheduler,
         .log = log},
        [&](const OverlayContentView& view, const StageStyle& style) { return painter.paint(view, style); });
    ModifierMonitor modifiers(modifierEvents, scheduler);
    overlay.start(modifiers);

    Preview preview(overlay, std::move(config));
    SettingsWindow settings(area, [&](int key) { preview.key(key); }, [&] { preview.end(); });
    settings.show();
    connection->attach(descriptors, scheduler, [] { QtApplicationHost::quit(EXIT_FAILURE); });
    preview.begin({.id = static_cast<std::uint32_t>(settings.winId())});
    const auto changes = screens.observeChanges([&] { preview.show("screens"); });
    return host.run();
}
