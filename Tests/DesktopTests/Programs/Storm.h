#pragma once
// A storm on a private desktop: whatever a person and other programs do there, at random and without a pause.
// The same seed gives much the same storm; how fast the machine is decides the rest.

#include "Support/Application.h"
#include "Support/KartoProcess.h"
#include "Support/KeyPresser.h"
#include "Support/Mouse.h"

#include <chrono>
#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace karto::desktop {

class Storm {
public:
    // Over everything, or over the settings and their preview alone.
    enum class Place : std::uint8_t { everywhere, settings };

    // Furnishes the desktop, which has the outputs of `studioAndTower`.
    Storm(PrivateDesktop& desktop, std::uint32_t seed, bool isComposited, Place place);

    // Does one thing.
    void act();

    // Ends with the settings open, without anything in front of them or a button of the preview pointed at.
    void openSettingsAlone();

    // Ends with the desktop as it was at the start: both displays, a panel, the sample configuration, no
    // windows, the settings closed.
    void calm();

    // How often each thing was done.
    [[nodiscard]] const std::map<std::string, int>& counts() const { return counts_; }

    // The last things done, the latest one last.
    [[nodiscard]] const std::vector<std::string>& latest() const { return latest_; }

    [[nodiscard]] const KeyPresser& keys() const { return keys_; }

private:
    struct Act {
        std::string name;
        double weight = 0;
        void (Storm::*run)();
        // Part of a storm over the settings alone.
        bool isOfSettings = false;
    };

    static const std::vector<Act> acts;

    void giveCommand();
    void showOverlay();
    void switchWindows();
    void openWindow();
    void endWindow();
    void changeWindow();
    void stopApplication();
    void editConfiguration();
    void changeDisplays();
    void changeKeyboard();
    void grabServer();
    void restartManager();
    void restartCompositor();
    void togglePanel();
    void openSettings();
    void useSettings();
    void editOnScreen();
    void closeSettings();

    // The settings and what they opened, the latest last.
    [[nodiscard]] std::vector<xcb_window_t> ownWindows() const { return desktop_.x().clientsNamed("karto"); }

    // From 0 up to the number, which it never is.
    int below(int number);

    bool oneIn(int number) { return below(number) == 0; }

    template<typename Items>
    const auto& oneOf(const Items& items) {
        return items[std::size_t(below(int(items.size())))];
    }

    Rect someArea();
    Point somePointIn(const Rect& area);
    // The duration is the matter: at random, up to the longest.
    void hesitate(std::chrono::milliseconds longest);

    PrivateDesktop& desktop_;
    std::mt19937 random_;
    KeyPresser keys_;
    Mouse mouse_;
    bool isComposited_;
    Place place_;
    std::list<Application> windows_;
    std::unique_ptr<ChildProcess> compositor_;
    std::unique_ptr<ChildProcess> panel_;
    bool isTowerConnected_ = true;
    bool isStudioTurned_ = false;
    bool isTowerRenamed_ = false;
    int opened_ = 0;
    std::map<std::string, int> counts_;
    std::vector<std::string> latest_;
};

} // namespace karto::desktop
