#include "Karto/Platform/Linux/XdgAutostart.h"

#include <fmt/format.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string_view>
#include <system_error>
#include <utility>

namespace karto {

namespace {

constexpr auto fileName = "karto.desktop";
constexpr std::size_t maximumEntryBytes = 1U << 20U;

// Paths in the environment count when they are absolute.
std::string environmentPath(const char* name, const std::string& otherwise = {}) {
    const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
    return value != nullptr && *value == '/' ? value : otherwise;
}

// The name of a file that was replaced while it ran stands for the new one.
std::string runningProgram() {
    constexpr std::string_view replaced = " (deleted)";
    std::error_code error;
    auto program = std::filesystem::read_symlink("/proc/self/exe", error).string();
    if (program.ends_with(replaced) && !std::filesystem::exists(program, error)) {
        program.resize(program.size() - replaced.size());
    }
    return program;
}

} // namespace

XdgAutostart::Places XdgAutostart::Places::ofSession(const std::string& home) {
    Places places{.folder = environmentPath("XDG_CONFIG_HOME", home + "/.config") + "/autostart",
                  .systemFolders = {},
                  .program = runningProgram()};
    std::istringstream folders(environmentPath("XDG_CONFIG_DIRS", "/etc/xdg"));
    for (std::string folder; std::getline(folders, folder, ':');) {
        places.systemFolders.push_back(folder + "/autostart");
    }
    return places;
}

XdgAutostart::XdgAutostart(FileSystem& files, Places places, std::function<void()> openSettings)
    : files_(files)
    , places_(std::move(places))
    , openSettings_(std::move(openSettings)) {}

LoginItemStatus XdgAutostart::status() {
    const auto entry = entryAt(path());
    if (!entry) {
        return systemEntry() ? LoginItemStatus::enabled : LoginItemStatus::notRegistered;
    }
    if (isForeign(*entry)) {
        return LoginItemStatus::notFound;
    }
    if (entry->isSwitchedOff) {
        return LoginItemStatus::requiresApproval;
    }
    return startsKarto(*entry) ? LoginItemStatus::enabled : LoginItemStatus::notFound;
}

std::expected<void, std::string> XdgAutostart::registerItem() {
    const auto entry = ownEntry();
    if (!entry) {
        return std::unexpected(entry.error());
    }
    if (const auto& own = *entry; own && own->isSwitchedOff) {
        return std::unexpected(fmt::format("\"{}\" is switched off in the desktop's settings", path()));
    }
    auto outcome = files_.createDirectories(places_.folder);
    if (outcome) {
        outcome = files_.writeAtomically(path(), autostartText(places_.program));
    }
    if (!outcome) {
        return failure(outcome.error());
    }
    return {};
}

std::expected<void, std::string> XdgAutostart::unregisterItem() {
    const auto entry = ownEntry();
    if (!entry) {
        return std::unexpected(entry.error());
    }
    if (*entry) {
        if (const auto outcome = files_.remove(path()); !outcome) {
            return failure(outcome.error());
        }
    }
    if (const auto system = systemEntry()) {
        return std::unexpected(fmt::format("\"{}\" starts Karto for everyone on this computer", *system));
    }
    return {};
}

std::string XdgAutostart::path() const { return places_.folder + "/" + fileName; }

std::optional<AutostartEntry> XdgAutostart::entryAt(const std::string& path) {
    const auto text = files_.read(path, maximumEntryBytes);
    if (text) {
        return readAutostartEntry(*text);
    }
    return files_.exists(path) ? std::optional(AutostartEntry{}) : std::nullopt;
}

bool XdgAutostart::startsKarto(const AutostartEntry& entry) {
    const bool isPath = entry.program.starts_with('/');
    return !entry.isSwitchedOff && !entry.program.empty() && !isForeign(entry) &&
           (!isPath || files_.exists(entry.program));
}

bool XdgAutostart::isForeign(const AutostartEntry& entry) const {
    const auto name = std::filesystem::path(entry.program).filename();
    // One that starts nothing hides the system's entry of that name, or is of no use to anybody.
    return !entry.program.empty() && name != "karto" && entry.program != places_.program;
}

std::optional<std::string> XdgAutostart::systemEntry() {
    for (const auto& folder : places_.systemFolders) {
        const auto file = folder + "/" + fileName;
        if (const auto entry = entryAt(file)) {
            return startsKarto(*entry) ? std::optional(file) : std::nullopt;
        }
    }
    return std::nullopt;
}

std::expected<std::optional<AutostartEntry>, std::string> XdgAutostart::ownEntry() {
    const auto text = files_.read(path(), maximumEntryBytes);
    if (!text && text.error().kind == FileError::Kind::notFound) {
        return std::nullopt;
    }
    if (!text) {
        return failure(text.error());
    }
    auto entry = readAutostartEntry(*text);
    if (isForeign(entry)) {
        return std::unexpected(
            fmt::format("\"{}\" belongs to another program and was left as it is", path()));
    }
    return entry;
}

std::unexpected<std::string> XdgAutostart::failure(const FileError& error) const {
    return std::unexpected(fmt::format("\"{}\": {}", path(), error.message));
}

} // namespace karto
