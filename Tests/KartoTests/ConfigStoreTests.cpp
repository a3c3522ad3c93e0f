#include "Karto/Adapters/ConfigStore.h"
#include "Karto/Platform/Linux/InotifyFileWatch.h"
#include "Karto/Platform/Linux/PosixFileSystem.h"
#include "KartoCore/ConfigReading.h"
#include "KartoCore/TOMLWriter.h"
#include "Support/FixedConfig.h"
#include "Support/ManualScheduler.h"
#include "Support/MemoryCheckLog.h"
#include "Support/PolledDescriptors.h"
#include "Support/TemporaryFolder.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <random>
#include <thread>

namespace karto::testing {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using ::testing::AnyOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using enum ConfigChangeEvent;

// Each text adds a display to the one before.
std::string configText(std::size_t displays) {
    std::string text = "[profile]\nname = \"home\"\n";
    for (std::size_t number = 1; number <= displays; ++number) {
        text += fmt::format("[[display]]\nname = \"d{}\"\norientation = \"landscape\"\n", number);
    }
    return text;
}

KartoConfig configOf(std::size_t displays) { return readConfig(configText(displays)).value(); }

// The real files, with the failures that a test asks for.
struct FailingFiles final : PosixFileSystem {
    FileResult<std::string> read(const std::string& path, std::size_t maximumBytes) override {
        return readError ? std::unexpected(*readError) : PosixFileSystem::read(path, maximumBytes);
    }

    FileResult<void> writeAtomically(const std::string& path, std::string_view bytes) override {
        return writeError ? std::unexpected(*writeError) : PosixFileSystem::writeAtomically(path, bytes);
    }

    std::optional<FileError> readError;
    std::optional<FileError> writeError;
};

// A started store over a file with one display.
struct StartedStore {
    StartedStore() {
        writeFile(path, configText(1));
        store->start([this](ConfigChangeEvent event) { events.push_back(event); });
    }

    // Has the store notice everything that happened and watch again; what it reported since the last time.
    std::vector<ConfigChangeEvent> settled() {
        for (auto turned = 0ms; turned < 1000ms; turned += 100ms) {
            descriptors.dispatch();
            scheduler.advance(100ms);
        }
        return std::exchange(events, {});
    }

    TemporaryFolder folder;
    fs::path path = folder.path() / "config.toml";
    fs::path backup = folder.path() / "config.toml.bak";
    FailingFiles files;
    ManualScheduler scheduler;
    PolledDescriptors descriptors;
    InotifyFileWatch fileWatch{descriptors};
    MemoryCheckLog log;
    std::unique_ptr<ConfigStore> store =
        std::make_unique<ConfigStore>(path, files, fileWatch, scheduler, log);
    std::vector<ConfigChangeEvent> events;
};

void replace(const fs::path& path, const std::string& text) {
    writeFile(path.native() + ".new", text);
    fs::rename(path.native() + ".new", path);
}

void replaceByLink(const fs::path& path, const fs::path& target) {
    fs::create_symlink(target, path.native() + ".new");
    fs::rename(path.native() + ".new", path);
}

// Leads config.toml through the linked folder "current" to the text in a new folder.
void publish(const fs::path& path, const std::string& text) {
    const auto release = path.parent_path() / std::to_string(text.size());
    fs::create_directory(release);
    writeFile(release / "config.toml", text);
    replaceByLink(path.parent_path() / "current", release);
    if (!fs::is_symlink(path)) {
        replaceByLink(path, "current/config.toml");
    }
}

const std::map<std::string, void (*)(const fs::path& path, const std::string& text)> editors{
    {"writes in place", writeFile},
    {"writes beside and renames", replace},
    {"appends",
     [](const fs::path& path, const std::string& text) {
         std::ofstream(path, std::ios::app) << text.substr(fs::file_size(path));
     }},
    {"sets the clock back",
     [](const fs::path& path, const std::string& text) {
         writeFile(path, text);
         fs::last_write_time(path, fs::last_write_time(path) - 24h * text.size());
     }},
    {"moves away and creates",
     [](const fs::path& path, const std::string& text) {
         fs::rename(path, path.native() + "~");
         writeFile(path, text);
     }},
    {"keeps the old file under a second name",
     [](const fs::path& path, const std::string& text) {
         fs::create_hard_link(path, path.native() + std::to_string(text.size()));
         replace(path, text);
     }},
    {"points the link elsewhere",
     [](const fs::path& path, const std::string& text) {
         const auto target = path.native() + std::to_string(text.size());
         writeFile(target, text);
         replaceByLink(path, target);
     }},
    {"points the linked folder elsewhere", publish},
    {"replaces what the link leads to",
     [](const fs::path& path, const std::string& text) {
         fs::is_symlink(path) ? replace(fs::canonical(path), text) : publish(path, text);
     }},
    {"moves the folder away",
     [](const fs::path& path, const std::string& text) {
         fs::rename(path.parent_path(), path.parent_path().native() + "~");
         fs::create_directory(path.parent_path());
         writeFile(path, text);
         fs::remove_all(path.parent_path().native() + "~");
     }},
};

TEST(ConfigStore, everyEditIsSeenAtOnceAndTheWatchGoesOn) {
    for (const auto& [name, edit] : editors) {
        SCOPED_TRACE(name);
        StartedStore started;
        for (std::size_t displays = 2; displays <= 4; ++displays) {
            edit(started.path, configText(displays));
            EXPECT_TRUE(started.descriptors.dispatch(10s));
            EXPECT_THAT(std::exchange(started.events, {}), ElementsAre(reloadedFromDisk));
            EXPECT_EQ(started.store->current()->displays.size(), displays);
            EXPECT_THAT(started.settled(), IsEmpty());
            EXPECT_EQ(started.scheduler.pendingTasks(), 0U) << "wakes up while nothing happens";
        }
    }
}

TEST(ConfigStore, ofTwoQuickEditsTheLaterOneEndsInForce) {
    StartedStore started;
    writeFile(started.path, configText(2));
    started.descriptors.dispatch(10s);
    started.scheduler.advance(99ms);
    writeFile(started.path, configText(3));
    EXPECT_FALSE(started.descriptors.dispatch());
    started.scheduler.advance(1ms);
    EXPECT_THAT(started.events, ElementsAre(reloadedFromDisk, reloadedFromDisk));
    EXPECT_EQ(started.store->current()->displays.size(), 3U);
}

TEST(ConfigStore, aFileThatCannotBeWatchedIsStillFollowed) {
    struct NoFileWatch final : FileWatch {
        std::optional<Registration> watch(const std::string& /*path*/,
                                          std::function<void()> /*onChange*/) override {
            return std::nullopt;
        }
    } noFileWatch;

    StartedStore started;
    ConfigStore store(started.path, started.files, noFileWatch, started.scheduler, started.log);
    std::vector<ConfigChangeEvent> events;
    store.start([&](ConfigChangeEvent event) { events.push_back(event); });
    writeFile(started.path, configText(2));
    started.scheduler.advance(2000ms);
    EXPECT_THAT(events, ElementsAre(reloadedFromDisk));
}

TEST(ConfigStore, aFailureToReadThatPassesIsNoticedWithoutAChangeOfTheFile) {
    StartedStore started;
    started.files.readError = {.message = "too many open files"};
    writeFile(started.path, configText(2));
    EXPECT_THAT(started.settled(), ElementsAre(reloadFailed));
    EXPECT_THAT(started.settled(), IsEmpty());
    started.files.readError.reset();
    EXPECT_THAT(started.settled(), ElementsAre(reloadedFromDisk));
    EXPECT_EQ(started.scheduler.pendingTasks(), 0U);
}

struct UnusableFile {
    // Absent for a link that leads nowhere.
    std::optional<std::string> text;
    // Part of the error; absent when none is shown.
    std::optional<std::string> error;
    bool isLegacy = false;
};

const std::vector<UnusableFile> unusableFiles{
    {std::nullopt, std::nullopt},
    {"[profile\n", "not valid TOML in line 1"},
    {configText(0) + "[[profile.zone]]\n", "layout format changed — open Settings to pick a new layout",
     true},
    {"display = [] # [[profile.zone]]\n" + configText(0), "config has no displays"},
    {std::string(maximumConfigBytes + 1, ' '), "it is larger than 10485760 bytes"}};

TEST(ConfigStore, theLastGoodConfigurationStaysInForceUntilTheFileIsRepaired) {
    for (const auto& [text, error, isLegacy] : unusableFiles) {
        SCOPED_TRACE(error.value_or("no error"));
        StartedStore started;
        const auto& store = *started.store;
        const auto good = store.current();
        fs::remove(started.path);
        text ? writeFile(started.path, *text) : fs::create_symlink("none", started.path);
        EXPECT_THAT(started.settled(), ElementsAre(reloadFailed));
        EXPECT_EQ(store.lastError().has_value(), error.has_value());
        EXPECT_THAT(store.lastError().value_or(""), HasSubstr(error.value_or("")));
        EXPECT_EQ(store.isLegacyFormat(), isLegacy);
        EXPECT_EQ(store.current(), good);
        EXPECT_EQ(store.snapshot(), good);
        EXPECT_EQ(readFile(started.backup), configText(1));

        fs::remove(started.path);
        writeFile(started.path, configText(1));
        EXPECT_THAT(started.settled(), ElementsAre(reloadedFromDisk));
        EXPECT_EQ(store.lastError(), std::nullopt);
        EXPECT_FALSE(store.isLegacyFormat());
    }
}

TEST(ConfigStore, ownWritesAreRecognisedOnceAndOnlyThose) {
    StartedStore started;
    auto& store = *started.store;
    replace(started.path, configText(1) + "[hotkeys]\nmodifiers = [\"control\", \"option\"]\n"
                                          "keys = { nextVariant = \"k\" }\n");
    EXPECT_THAT(started.settled(), ElementsAre(reloadedFromDisk));
    EXPECT_EQ(store.renamedHotkeyNames().size(), 1U);

    const auto reloaded = store.current();
    ASSERT_TRUE(store.save(configOf(2)));
    EXPECT_THAT(started.settled(), ElementsAre(ownWriteSuppressed));
    EXPECT_EQ(*store.current(), configOf(2));
    EXPECT_EQ(store.snapshot(), reloaded);
    EXPECT_THAT(store.renamedHotkeyNames(), IsEmpty());

    replace(started.path, readFile(started.path));
    EXPECT_THAT(started.settled(), ElementsAre(reloadedFromDisk));

    ASSERT_TRUE(store.save(configOf(4)));
    writeFile(started.path, configText(3));
    EXPECT_THAT(started.settled(), ElementsAre(reloadedFromDisk));
    EXPECT_EQ(*store.current(), configOf(3));
}

TEST(ConfigStore, neitherASaveNorAFailedReadForgetsWhatWasReadLast) {
    StartedStore started;
    auto& store = *started.store;
    const auto good = store.current();
    replace(started.path, configText(0) + "[[profile.zone]]\n[hotkeys.keys]\nnextVariant = \"k\"\n");
    EXPECT_EQ(store.reload(), reloadFailed);
    ASSERT_TRUE(store.save(configOf(2)));
    EXPECT_EQ(store.lastError(), std::nullopt);
    EXPECT_TRUE(store.isLegacyFormat());
    EXPECT_EQ(store.snapshot(), good);

    started.files.readError = {.message = "too many open files"};
    EXPECT_EQ(store.reload(), reloadFailed);
    EXPECT_EQ(store.renamedHotkeyNames().size(), 1U);
    started.files.readError.reset();
    EXPECT_EQ(store.reload(), ownWriteSuppressed);
    EXPECT_THAT(store.renamedHotkeyNames(), IsEmpty());
}

TEST(ConfigStore, aFailureOfTheFilesIsReportedAndChangesNothing) {
    StartedStore started;
    auto& store = *started.store;
    const auto before = store.current();
    started.files.readError = {.message = "permission denied"};
    EXPECT_EQ(store.reload(), reloadFailed);
    EXPECT_EQ(store.lastError(), "could not read " + started.path.native() + " — permission denied");
    started.files.readError.reset();

    EXPECT_EQ(store.save(KartoConfig{}).error(), (SaveError{.message = "config has no displays",
                                                            .kind = SaveError::Kind::invalidConfiguration}));
    auto unreadable = configOf(1);
    unreadable.profileName = "\xFF";
    EXPECT_EQ(store.save(unreadable).error(),
              (SaveError{.message = "this layout cannot be saved — the text is not UTF-8 in line 25",
                         .kind = SaveError::Kind::invalidConfiguration}));
    EXPECT_EQ(store.current(), before);
    EXPECT_EQ(readFile(started.path), configText(1));

    started.files.writeError = {.message = "no space left on device"};
    EXPECT_EQ(
        store.save(configOf(2)).error(),
        (SaveError{.message = "could not write " + started.path.native() + " — no space left on device"}));
    EXPECT_EQ(store.current(), before);
    writeFile(started.path, configText(2));
    store.takeSnapshot();
    EXPECT_THAT(started.log.lines, IsEmpty());
    EXPECT_EQ(store.reload(), reloadedFromDisk);
    EXPECT_THAT(started.log.lines, ElementsAre("config: could not write backup to " +
                                               started.backup.native() + " — no space left on device"));
    started.files.writeError.reset();
    EXPECT_TRUE(store.save(configOf(3)));
    EXPECT_THAT(started.settled(), ElementsAre(ownWriteSuppressed));
}

std::ptrdiff_t openDescriptors() {
    const fs::directory_iterator descriptors("/proc/self/fd");
    return std::distance(begin(descriptors), end(descriptors));
}

TEST(ConfigStore, ofAThousandReplacementsInASecondTheLastOneEndsInForce) {
    StartedStore started;
    const auto descriptors = openDescriptors();
    for (std::size_t edit = 1; edit <= 1000; ++edit) {
        replace(started.path, configText(edit % 7 + 1));
        started.descriptors.dispatch();
        started.scheduler.advance(1ms);
    }
    // Twice a tenth of a second: at the first change, and when the file is watched again.
    EXPECT_LE(started.settled().size(), 22U);
    EXPECT_EQ(*started.store->current(), configOf(1000 % 7 + 1));
    EXPECT_EQ(openDescriptors(), descriptors);
    EXPECT_EQ(started.scheduler.pendingTasks(), 0U);
}

TEST(ConfigStore, savingGoesThroughLinksAndCreatesMissingFolders) {
    StartedStore started;
    replaceByLink(started.path, "new/folder/real.toml");
    EXPECT_THAT(started.settled(), ElementsAre(reloadFailed));
    ASSERT_TRUE(started.store->save(configOf(2)));
    EXPECT_TRUE(fs::is_symlink(started.path));
    const auto target = started.folder.path() / "new/folder/real.toml";
    EXPECT_EQ(readFile(target), TOMLWriter::write(configOf(2)));
    EXPECT_THAT(started.settled(), ElementsAre(ownWriteSuppressed));

    started.files.readError = {.message = "permission denied"};
    started.store->reload();
    EXPECT_EQ(started.store->lastError(), "could not read " + target.native() + " — permission denied");
}

TEST(ConfigStore, theSnapshotIsTheLastReloadOrTheMomentItWasTaken) {
    StartedStore started;
    auto& store = *started.store;
    EXPECT_EQ(store.snapshot(), store.current());
    ASSERT_TRUE(store.save(configOf(2)));
    EXPECT_EQ(*store.snapshot(), configOf(1));
    store.takeSnapshot();
    EXPECT_EQ(readFile(started.backup), TOMLWriter::write(configOf(2)));
    ASSERT_TRUE(store.save(configOf(3)));
    ASSERT_TRUE(store.restoreSnapshot());
    EXPECT_EQ(*store.current(), configOf(2));
    EXPECT_EQ(readFile(started.path), TOMLWriter::write(configOf(2)));
}

TEST(ConfigStore, startsOnceAndIsSilentAfterItsEnd) {
    StartedStore started;
    started.store->start([](ConfigChangeEvent) { FAIL() << "started twice"; });
    writeFile(started.path, configText(2));
    started.descriptors.dispatch(10s);
    started.store.reset();
    writeFile(started.path, configText(3));
    EXPECT_THAT(started.settled(), ElementsAre(reloadedFromDisk));
}

TEST(ConfigProviding, theDefaultsHoldWithoutAUsableConfiguration) {
    auto unusable = configOf(1);
    unusable.hotkeys = {.modifiers = {"hyper"}, .keys = {{{"tidy", "5"}}}};
    for (const auto& source : {FixedConfig(), FixedConfig(unusable)}) {
        EXPECT_EQ(source.commandKeys(), CommandKey::defaults());
        EXPECT_EQ(source.hotkeyModifiers(), ModifierSet::allModifiers);
    }
}

[[noreturn]] void saveForEver(ConfigStore& store) {
    for (std::size_t displays = 100; store.save(configOf(displays)); displays = 500 - displays) {
        store.takeSnapshot();
    }
    ::_exit(1);
}

// In a process of its own, for the given time.
void killWhileSaving(ConfigStore& store, std::chrono::microseconds time) {
    const auto child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        saveForEver(store);
    }
    std::this_thread::sleep_for(time);
    ::kill(child, SIGKILL);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status));
}

TEST(ConfigStore, aKillAtAnyMomentLeavesTheConfigurationAndItsBackupWhole) {
    StartedStore started;
    const auto isWhole =
        AnyOf(configText(1), TOMLWriter::write(configOf(100)), TOMLWriter::write(configOf(400)));
    std::mt19937 random(std::random_device{}());
    std::uniform_int_distribution<int> microseconds(0, 10'000);
    // With KARTO_STRESS in the environment it runs for minutes.
    const int kills = std::getenv("KARTO_STRESS") != nullptr ? 1000 : 50;
    for (int kill = 0; kill < kills && !::testing::Test::HasFailure(); ++kill) {
        killWhileSaving(*started.store, std::chrono::microseconds(microseconds(random)));
        EXPECT_THAT(readFile(started.path), isWhole);
        EXPECT_THAT(readFile(started.backup), isWhole);
    }
    // Once it is old, the next writes sweep away what the crashes left.
    for (const auto& entry : fs::directory_iterator(started.folder.path())) {
        fs::last_write_time(entry, fs::last_write_time(entry) - 1h);
    }
    ASSERT_TRUE(started.store->save(configOf(1)));
    started.store->takeSnapshot();
    const fs::directory_iterator files(started.folder.path());
    EXPECT_EQ(std::distance(begin(files), end(files)), 2);
}

} // namespace

} // namespace karto::testing
