#pragma once
// A desktop for one test: an X server on a free display number with the outputs asked for, a message bus, a
// window manager by name, and a temporary home folder. Nothing of the surrounding session is inherited, and
// everything ends with the object.

#include "Support/ChildProcess.h"
#include "Support/XClient.h"

#include <csignal>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace karto::desktop {

struct Output {
    // The product name that the display reports.
    std::string name;
    Rect area;
    // Of the piece; zero when it has none.
    std::uint32_t serial = 0;
};

// A landscape display and a portrait one to its right.
inline const std::vector<Output> studioAndTower{
    {.name = "Studio", .area = {.x = 0, .y = 0, .width = 1280, .height = 800}},
    {.name = "Tower", .area = {.x = 1280, .y = 0, .width = 600, .height = 1024}}};

class PrivateDesktop {
public:
    // Files stay in `folder` when one is given; otherwise they live in a temporary folder.
    explicit PrivateDesktop(std::vector<Output> outputs = studioAndTower,
                            const std::filesystem::path& folder = {});
    ~PrivateDesktop();
    PrivateDesktop(PrivateDesktop&&) = delete;
    PrivateDesktop& operator=(PrivateDesktop&&) = delete;
    PrivateDesktop(const PrivateDesktop&) = delete;
    PrivateDesktop& operator=(const PrivateDesktop&) = delete;

    [[nodiscard]] const std::filesystem::path& home() const { return home_; }

    [[nodiscard]] const XClient& x() const { return *x_; }

    // What programs of this desktop see; HOME and DISPLAY are this desktop's own.
    [[nodiscard]] Environment environment() const;

    // Returns once the manager takes windows in.
    void startWindowManager(const std::string& name);

    void killWindowManager() { manager_.reset(); }

    void killServer();

    // Until it is thawed, the server does nothing at all.
    void freezeServer() { server_->signal(SIGSTOP); }

    void thawServer() { server_->signal(SIGCONT); }

    [[nodiscard]] ChildProcess start(const std::vector<std::string>& arguments,
                                     const Environment& changes = {});
    // Runs a program to its end; throws when it fails.
    void run(const std::vector<std::string>& arguments);

    // Presses the pointer's first button in the middle of the area.
    void click(const Rect& area);

    // A server whose outputs are fixed knows none of the following.
    [[nodiscard]] bool hasOutputs() const { return hasOutputs_; }

    // Plugs an output in or out; by its place in the list where several have one name.
    void setConnected(const std::string& outputName, bool connected);
    void setConnected(std::size_t index, bool connected);
    // Another resolution, or another orientation.
    void resize(const std::string& outputName, const Size& size);
    // Another display in the place of one; the output is known by its new name from here on.
    void rename(const std::string& outputName, const std::string& newName);
    // Plugs the displays of the first two outputs into each other's; the areas stay with the outputs.
    void swapCables();

    void screenshot(const std::filesystem::path& file);

private:
    void startBus();
    [[nodiscard]] bool startServer(const std::vector<std::string>& arguments);
    // False, too, before it answers.
    [[nodiscard]] bool isKWinComposing();
    void defineOutputs();
    void defineMonitors();
    void arrange(const std::vector<std::string>& layout);
    void addMode(const std::string& connector, const Rect& area);
    [[nodiscard]] std::size_t indexOf(const std::string& outputName) const;
    // Has the output report its display.
    void describe(std::size_t index);

    std::vector<Output> outputs_;
    bool isTemporary_;
    std::filesystem::path folder_;
    std::filesystem::path home_;
    std::string display_;
    std::string busAddress_ = "disabled:";
    bool hasOutputs_ = false;
    // The connectors that have each mode already.
    std::map<std::string, std::set<std::string>> modes_;
    // The call that puts every output in its place.
    std::vector<std::string> layout_{"xrandr"};
    int programs_ = 0;
    std::unique_ptr<ChildProcess> bus_;
    std::unique_ptr<ChildProcess> server_;
    std::unique_ptr<XClient> x_;
    std::unique_ptr<ChildProcess> manager_;
};

} // namespace karto::desktop
