// Has the program live through a storm and asks afterwards what became of it:
// soak MINUTES SEED plain|composited everywhere|settings. What happened is in a table on standard output; the
// status is 1 when something is wrong, with a sentence for each such thing on standard error.

#include "Storm.h"

#include "KartoCore/ConfigReading.h"
#include "Support/Footprint.h"
#include "Support/SampleZones.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <span>

namespace karto::desktop {

namespace {

using Clock = std::chrono::steady_clock;

// Memory that is given back to nobody, for it will be needed again: by the allocator, and by the sanitizers.
#ifdef __SANITIZE_ADDRESS__
constexpr long mostGrowthKilobytes = 65'536;
#else
constexpr long mostGrowthKilobytes = 2'048;
#endif

const Environment sanitizerOptions{{"ASAN_OPTIONS", "quarantine_size_mb=8:detect_leaks=1"},
                                   {"UBSAN_OPTIONS", "print_stacktrace=1"}};

class Soak {
public:
    Soak(std::chrono::seconds duration, std::uint32_t seed, bool isComposited, Storm::Place place)
        : duration_(duration)
        , place_(place)
        , storm_(desktop_, seed, isComposited, place)
        , karto_(desktop_, sanitizerOptions) {
        karto_.waitForBanner();
    }

    // Whether all is well.
    bool run() {
        weather(std::min<std::chrono::seconds>(duration_ / 3, 60s));
        const Footprint before = atRest();
        weather(duration_ - std::min<std::chrono::seconds>(duration_ / 3, 60s));
        const Footprint after = atRest();
        print(before, after);
        compare(before, after);
        end();
        return faults_.empty();
    }

    [[nodiscard]] const std::vector<std::string>& faults() const { return faults_; }

private:
    void weather(std::chrono::seconds duration) {
        for (const auto end = Clock::now() + duration; Clock::now() < end;) {
            std::string trouble;
            try {
                storm_.act();
            } catch (const std::exception& failure) {
                trouble = failure.what();
            }
            if (!karto_.process().isAlive()) {
                trouble = "Karto died";
            }
            if (!trouble.empty()) {
                throw std::runtime_error(fmt::format("{}; the last that happened was: {}; Karto said: {}",
                                                     trouble, fmt::join(storm_.latest(), ", "),
                                                     karto_.process().errors()));
            }
        }
        // Elsewhere the storm has the file say what no settings would.
        if (place_ == Storm::Place::settings) {
            expectAgreement();
        }
        storm_.calm();
    }

    // A file that says what the settings have is read without a change of what they and their preview show.
    void expectAgreement() {
        storm_.openSettingsAlone();
        // What they have still to write is written.
        std::this_thread::sleep_for(2s);
        const auto path = KartoProcess::configurationPath(desktop_);
        const std::string written = contentsOf(path);
        if (const auto config = readConfig(written); !config || !config->validate()) {
            complain("the file cannot be read: {}", written);
            return;
        }
        const auto shown = picture();
        karto_.log().rest();
        KartoProcess::writeConfiguration(desktop_, "# From elsewhere.\n" + written);
        if (!karto_.log().next("config reload: config loaded")) {
            complain("the file was not read again");
        }
        std::this_thread::sleep_for(1s);
        if (picture() != shown) {
            complain("the settings had something else than the file: {}", written);
        }
    }

    // Enough points to tell one layout from another.
    [[nodiscard]] std::vector<std::uint32_t> picture() const {
        constexpr int step = 16;
        std::vector<std::uint32_t> colors;
        for (const auto& output : studioAndTower) {
            for (int y = int(output.area.y); y < output.area.maxY(); y += step) {
                for (int x = int(output.area.x); x < output.area.maxX(); x += step) {
                    colors.push_back(desktop_.x().colorAt(x, y));
                }
            }
        }
        return colors;
    }

    // What Karto holds once it obeys and has nothing more to do.
    Footprint atRest() {
        expectObedience();
        showOverlay();
        expectNothingOnScreen();
        // What is hidden stays with the server for ten seconds.
        Footprint footprint = footprintOf(desktop_.x(), karto_.process().pid());
        for (auto since = Clock::now(); Clock::now() - since < 11s;) {
            std::this_thread::sleep_for(200ms);
            const Footprint now = footprintOf(desktop_.x(), karto_.process().pid());
            if (now.serverResources != footprint.serverResources) {
                since = Clock::now();
            }
            footprint = now;
        }
        return footprint;
    }

    void expectObedience() {
        const Application window = Application::probe(desktop_, "plain", "witness", somewhere);
        const auto& keys = storm_.keys();
        // The end of the storm reaches Karto in its own time.
        require("Karto to obey", [&] {
            keys.chord("AE05");
            return eventually([&] { return fits(window.frame(), zone::five); }, 300ms);
        });
        constexpr std::array commands{std::pair{"AE02", zone::two},   std::pair{"UP", zone::rightOfStudio},
                                      std::pair{"RGHT", zone::three}, std::pair{"RGHT", zone::four},
                                      std::pair{"AC04", zone::tower}, std::pair{"AE01", zone::one}};
        for (const auto& command : commands) {
            const auto& key = command.first;
            const Rect frame = command.second;
            keys.chord(key);
            if (!eventually([&] { return fits(window.frame(), frame); }, 5s)) {
                const Rect is = window.frame();
                complain("hyper and {} left the window at {}, {}, {} x {}", key, is.x, is.y, is.width,
                         is.height);
            }
        }
    }

    // What is hidden keeps some of what it showed last, which shall be the same each time.
    void showOverlay() const {
        storm_.keys().holdHyper();
        require("the overlay", [this] { return desktop_.x().unmanagedFrames("karto").size() == 2; });
        storm_.keys().releaseHyper();
    }

    void expectNothingOnScreen() {
        if (!eventually([this] { return desktop_.x().unmanagedFrames("karto").empty(); }, 5s)) {
            std::string frames;
            for (const auto& frame : desktop_.x().unmanagedFrames("karto")) {
                frames += fmt::format(" {} x {} at {}, {};", frame.width, frame.height, frame.x, frame.y);
            }
            complain("Karto left something on the screen:{}", frames);
        }
    }

    void print(const Footprint& before, const Footprint& after) const {
        fmt::print("| happened | times |\n|---|---:|\n");
        for (const auto& [name, count] : storm_.counts()) {
            fmt::print("| {} | {} |\n", name, count);
        }
        fmt::print("\n| Karto at rest holds | warmed up | at the end |\n|---|---:|---:|\n");
        for (const auto& [name, field, allowedGrowth] : rows) {
            fmt::print("| {} | {} | {} |\n", name, before.*field, after.*field);
        }
        std::fflush(stdout);
    }

    void compare(const Footprint& before, const Footprint& after) {
        for (const auto& [name, field, allowedGrowth] : rows) {
            if (after.*field > before.*field + allowedGrowth) {
                complain("{} grew from {} to {}", name, before.*field, after.*field);
            }
        }
    }

    void end() {
        karto_.process().signal(SIGTERM);
        if (karto_.process().waitForExit() != Exit{.status = 0, .signal = {}}) {
            complain("Karto did not end in an orderly way");
        }
        const std::string errors = karto_.process().errors();
        if (errors.contains("Sanitizer") || errors.contains("runtime error")) {
            complain("the sanitizers report: {}", errors);
        }
    }

    template<typename... Arguments>
    void complain(fmt::format_string<Arguments...> format, Arguments&&... arguments) {
        faults_.push_back(fmt::format(format, std::forward<Arguments>(arguments)...));
    }

    struct Row {
        std::string name;
        long Footprint::* field;
        // Far below one for each time that something happens.
        long allowedGrowth;
    };

    // Which images Karto keeps with the server for their next use depends on what it showed.
    inline static const std::vector<Row> rows{
        {"resident memory, kB", &Footprint::residentKilobytes, mostGrowthKilobytes},
        {"descriptors", &Footprint::descriptors, 2},
        {"X resources", &Footprint::serverResources, 32},
        {"pixmaps, kB", &Footprint::pixmapKilobytes, 256}};

    std::chrono::seconds duration_;
    Storm::Place place_;
    PrivateDesktop desktop_;
    Storm storm_;
    KartoProcess karto_;
    std::vector<std::string> faults_;
};

} // namespace

} // namespace karto::desktop

int main(int count, char** values) {
    const std::span arguments(values, std::size_t(count));
    if (arguments.size() != 5) {
        std::fputs("soak MINUTES SEED plain|composited everywhere|settings\n", stderr);
        return 2;
    }
    try {
        using namespace karto::desktop;
        Soak soak(std::chrono::seconds(int(std::stod(arguments[1]) * 60)),
                  std::uint32_t(std::stoul(arguments[2])), std::string_view(arguments[3]) == "composited",
                  std::string_view(arguments[4]) == "settings" ? Storm::Place::settings
                                                               : Storm::Place::everywhere);
        const bool isWell = soak.run();
        for (const auto& fault : soak.faults()) {
            fmt::print(stderr, "soak: {}\n", fault);
        }
        return isWell ? 0 : 1;
    } catch (const std::exception& failure) {
        fmt::print(stderr, "soak: {}\n", failure.what());
        return 1;
    }
}
