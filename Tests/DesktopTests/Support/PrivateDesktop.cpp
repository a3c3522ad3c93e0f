#include "Support/PrivateDesktop.h"

#include "Support/SampleEdid.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <xcb/randr.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <numeric>

namespace karto::desktop {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view serverConfiguration = R"(
Section "ServerFlags"
    Option "AutoAddDevices" "false"
    Option "AutoAddGPU" "false"
    Option "DontVTSwitch" "true"
EndSection
Section "Device"
    Identifier "card"
    Driver "dummy"
    VideoRam 65536
EndSection
Section "Screen"
    Identifier "screen"
    Device "card"
    DefaultDepth 24
    SubSection "Display"
        Depth 24
        Virtual 4096 2048
    EndSubSection
EndSection
)";

fs::path temporaryFolder() {
    std::string path = fs::temp_directory_path() / "karto-desktop-XXXXXX";
    if (mkdtemp(path.data()) == nullptr) {
        throw std::runtime_error("cannot create " + path);
    }
    return path;
}

std::string connector(std::size_t index) { return fmt::format("DUMMY{}", index); }

std::string modeName(const Rect& area) { return fmt::format("{}x{}", area.width, area.height); }

} // namespace

PrivateDesktop::PrivateDesktop(std::vector<Output> outputs, const fs::path& folder)
    : outputs_(std::move(outputs))
    , isTemporary_(folder.empty())
    , folder_(isTemporary_ ? temporaryFolder() : folder)
    , home_(folder_ / "home") {
    fs::create_directories(home_ / ".config/karto");
    fs::create_directories(folder_ / "runtime");
    fs::permissions(folder_ / "runtime", fs::perms::owner_all);
    const fs::path configuration = folder_ / "xorg.conf";
    std::ofstream(configuration) << serverConfiguration;

    // The script of the same name in the search path may lead through a wrapper that only the console may
    // use.
    hasOutputs_ =
        startServer({"/usr/lib/xorg/Xorg", "-displayfd", "1", "-config", configuration, "-logfile",
                     folder_ / "xorg.log", "-noreset", "-nolisten", "tcp", "-novtswitch", "-sharevts"});
    if (hasOutputs_) {
        defineOutputs();
        return;
    }
    const auto around = [](const Rect& sum, const Output& output) { return unionOf(sum, output.area); };
    const Rect whole = std::accumulate(outputs_.begin(), outputs_.end(), Rect::null(), around);
    if (!startServer({"Xvfb", "-displayfd", "1", "-screen", "0", modeName(whole) + "x24", "-noreset",
                      "-nolisten", "tcp"})) {
        throw std::runtime_error("no private X server would start: " + server_->errors());
    }
    defineMonitors();
}

PrivateDesktop::~PrivateDesktop() {
    manager_.reset();
    x_.reset();
    server_.reset();
    if (isTemporary_) {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    }
}

void PrivateDesktop::startBus() {
    // Goes with the folder, and is not where programs without an address would look for one.
    const auto socket = folder_ / "session-bus";
    bus_ = std::make_unique<ChildProcess>(
        start({"dbus-daemon", "--session", "--nofork", "--address=unix:path=" + socket.string(),
               "--print-address=1"}));
    require("the message bus", [this] { return bus_->output().ends_with('\n'); });
    busAddress_ = bus_->output();
    busAddress_.pop_back();
}

bool PrivateDesktop::startServer(const std::vector<std::string>& arguments) {
    server_ = std::make_unique<ChildProcess>(arguments, environment(), folder_ / "server");
    const auto hasStarted = [this] { return server_->output().ends_with('\n'); };
    // A slow one is no missing one.
    require("the X server", [&] { return hasStarted() || !server_->isAlive(); });
    if (!hasStarted()) {
        return false;
    }
    display_ = fmt::format(":{}", std::stoi(server_->output()));
    x_ = std::make_unique<XClient>(display_);
    // After the server: what the bus starts wants to find it.
    startBus();
    return true;
}

void PrivateDesktop::defineOutputs() {
    for (std::size_t i = 0; i < outputs_.size(); ++i) {
        const Rect& area = outputs_[i].area;
        describe(i);
        addMode(connector(i), area);
        layout_.insert(layout_.end(), {"--output", connector(i), "--mode", modeName(area), "--pos",
                                       fmt::format("{}x{}", area.x, area.y)});
        if (i == 0) {
            layout_.emplace_back("--primary");
        }
    }
    arrange(layout_);
}

void PrivateDesktop::defineMonitors() {
    for (std::size_t i = 0; i < outputs_.size(); ++i) {
        const Rect& area = outputs_[i].area;
        run({"xrandr", "--setmonitor", (i == 0 ? "*" : "") + outputs_[i].name,
             fmt::format("{}/300x{}/200+{}+{}", area.width, area.height, area.x, area.y),
             i == 0 ? "screen" : "none"});
    }
}

void PrivateDesktop::describe(std::size_t index) {
    const Output& described = outputs_[index];
    const auto edid = karto::testing::sampleEdid(described.serial, {{.text = described.name}});
    xcb_connection_t* connection = x_->connection();
    const Reply<xcb_randr_get_screen_resources_reply_t> resources(xcb_randr_get_screen_resources_reply(
        connection, xcb_randr_get_screen_resources(connection, x_->root()), nullptr));
    const auto* outputs = xcb_randr_get_screen_resources_outputs(resources.get());
    for (int i = 0; i < resources->num_outputs; ++i) {
        const Reply<xcb_randr_get_output_info_reply_t> info(xcb_randr_get_output_info_reply(
            connection, xcb_randr_get_output_info(connection, outputs[i], XCB_CURRENT_TIME), nullptr));
        const std::string found(reinterpret_cast<const char*>(xcb_randr_get_output_info_name(info.get())),
                                info->name_len);
        if (found == connector(index)) {
            xcb_randr_change_output_property(connection, outputs[i], x_->atom("EDID"), XCB_ATOM_INTEGER, 8,
                                             XCB_PROP_MODE_REPLACE, edid.size(), edid.data());
        }
    }
    // The programs that look at it next have connections of their own.
    x_->settle();
}

void PrivateDesktop::arrange(const std::vector<std::string>& layout) {
    run(layout);
    // The driver tells which outputs are connected only when it is asked after the change.
    run({"xrandr", "--query"});
    if (manager_) {
        require("the window manager to follow", [this] { return x_->managerAnswers(patience); });
    }
}

void PrivateDesktop::addMode(const std::string& connectorName, const Rect& area) {
    auto& connectors = modes_[modeName(area)];
    if (!connectors.insert(connectorName).second) {
        return;
    }
    if (connectors.size() == 1) {
        // The timings beyond the visible part mean nothing to a card that drives no cable.
        const auto text = [](double value) { return fmt::format("{}", value); };
        run({"xrandr", "--newmode", modeName(area), "80", text(area.width), text(area.width + 8),
             text(area.width + 16), text(area.width + 24), text(area.height), text(area.height + 1),
             text(area.height + 2), text(area.height + 3)});
    }
    run({"xrandr", "--addmode", connectorName, modeName(area)});
}

std::size_t PrivateDesktop::indexOf(const std::string& outputName) const {
    const auto output = std::ranges::find(outputs_, outputName, &Output::name);
    if (output == outputs_.end()) {
        throw std::runtime_error("no output named " + outputName);
    }
    return std::size_t(output - outputs_.begin());
}

void PrivateDesktop::setConnected(const std::string& outputName, bool connected) {
    setConnected(indexOf(outputName), connected);
}

void PrivateDesktop::setConnected(std::size_t index, bool connected) {
    const Rect& area = outputs_.at(index).area;
    if (connected) {
        arrange({"xrandr", "--output", connector(index), "--mode", modeName(area), "--pos",
                 fmt::format("{}x{}", area.x, area.y)});
    } else {
        arrange({"xrandr", "--output", connector(index), "--off"});
    }
}

void PrivateDesktop::resize(const std::string& outputName, const Size& size) {
    const std::size_t index = indexOf(outputName);
    Rect& area = outputs_[index].area;
    area.width = size.width;
    area.height = size.height;
    addMode(connector(index), area);
    arrange({"xrandr", "--output", connector(index), "--mode", modeName(area)});
}

void PrivateDesktop::rename(const std::string& outputName, const std::string& newName) {
    const std::size_t index = indexOf(outputName);
    outputs_[index].name = newName;
    describe(index);
}

void PrivateDesktop::swapCables() {
    std::swap(outputs_.at(0).name, outputs_.at(1).name);
    std::swap(outputs_.at(0).serial, outputs_.at(1).serial);
    describe(0);
    describe(1);
}

Environment PrivateDesktop::environment() const {
    Environment result{{"PATH", "/usr/local/bin:/usr/bin:/bin:/usr/games"},
                       {"HOME", home_},
                       {"LANG", "C.UTF-8"},
                       {"XDG_RUNTIME_DIR", folder_ / "runtime"},
                       {"XDG_SESSION_TYPE", "x11"},
                       {"DBUS_SESSION_BUS_ADDRESS", busAddress_},
                       {"NO_AT_BRIDGE", "1"},
                       {"GTK_A11Y", "none"}};
    if (!display_.empty()) {
        result["DISPLAY"] = display_;
    }
    return result;
}

ChildProcess PrivateDesktop::start(const std::vector<std::string>& arguments, const Environment& changes) {
    Environment mixed = changes;
    mixed.merge(environment());
    // An empty value takes the variable away.
    std::erase_if(mixed, [](const auto& entry) { return entry.second.empty(); });
    const std::string name =
        fmt::format("{}-{}", ++programs_, fs::path(arguments.front()).filename().string());
    return {arguments, mixed, folder_ / name};
}

void PrivateDesktop::run(const std::vector<std::string>& arguments) {
    ChildProcess program = start(arguments);
    const auto exit = program.waitForExit().value_or(Exit{});
    if (exit != Exit{.status = 0, .signal = {}}) {
        throw std::runtime_error(fmt::format("{} failed with status {}, signal {}: {}",
                                             fmt::join(arguments, " "), exit.status.value_or(-1),
                                             exit.signal.value_or(-1), program.errors()));
    }
}

void PrivateDesktop::click(const Rect& area) {
    run({"xdotool", "mousemove", fmt::format("{:.0f}", area.x + area.width / 2),
         fmt::format("{:.0f}", area.y + area.height / 2), "click", "1"});
}

void PrivateDesktop::startWindowManager(const std::string& name) {
    manager_ = std::make_unique<ChildProcess>(start({name}));
    require(name + " to announce itself",
            [this] { return !x_->property(x_->root(), "_NET_SUPPORTING_WM_CHECK").empty(); });
    require(name + " to take windows in", [this] { return x_->managerAnswers(200ms); });
    if (name == "kwin_x11") {
        // Its compositor's window comes after all this, and lies over the screen for some milliseconds
        // before it lets the pointer through.
        require("its compositor", [this] { return isKWinComposing(); });
    }
    if (hasOutputs_) {
        // Some managers arrange the outputs anew when they start.
        arrange(layout_);
    }
}

bool PrivateDesktop::isKWinComposing() {
    ChildProcess question =
        start({"dbus-send", "--print-reply=literal", "--dest=org.kde.KWin", "/Compositor",
               "org.freedesktop.DBus.Properties.Get", "string:org.kde.kwin.Compositing", "string:active"});
    question.waitForExit();
    return question.output().contains("true");
}

void PrivateDesktop::killServer() {
    server_->signal(SIGKILL);
    server_->waitForExit();
}

void PrivateDesktop::screenshot(const fs::path& file) { run({"import", "-window", "root", file}); }

} // namespace karto::desktop
