#include "Karto/Adapters/ConfigStore.h"

#include "KartoCore/ConfigReading.h"
#include "KartoCore/HotkeyNamesAsWritten.h"
#include "KartoCore/TOMLWriter.h"

#include <fmt/format.h>

#include <filesystem>
#include <utility>

namespace karto {

namespace {

using namespace std::chrono_literals;

// A program that replaces a file takes more than one step; watching again waits until it is through.
constexpr auto rearmDelay = 100ms;
constexpr auto missingFilePoll = 1000ms;

std::unexpected<SaveError> invalid(std::string message) {
    return std::unexpected(
        SaveError{.message = std::move(message), .kind = SaveError::Kind::invalidConfiguration});
}

std::unexpected<SaveError> notWritten(std::string_view path, const FileError& error) {
    return std::unexpected(SaveError{.message = fmt::format("could not write {} — {}", path, error.message),
                                     .kind = SaveError::Kind::notWritten});
}

} // namespace

ConfigStore::ConfigStore(std::string path, FileSystem& files, FileWatch& fileWatch, Scheduler& scheduler,
                         CheckLog& log)
    : path_(std::move(path))
    , files_(files)
    , fileWatch_(fileWatch)
    , scheduler_(scheduler)
    , log_(log) {}

void ConfigStore::start(std::function<void(ConfigChangeEvent)> onChange) {
    if (std::exchange(isStarted_, true)) {
        return;
    }
    onChange_ = std::move(onChange);
    reload();
    watch();
}

ConfigChangeEvent ConfigStore::reload() {
    lastRead_ = read();
    if (lastRead_) {
        return take(*lastRead_);
    }
    // A missing file is no error to show.
    const auto& error = lastRead_.error();
    if (error.kind == FileError::Kind::notFound) {
        return fail(std::nullopt);
    }
    return fail(fmt::format("could not read {} — {}", resolvedPath(), error.message));
}

ConfigChangeEvent ConfigStore::take(const std::string& bytes) {
    const auto document = parseTomlDocument(bytes);
    // Before everything else, so that the names are known also of a file that is refused below.
    renamedHotkeyNames_ = HotkeyNameMigration::renames(readHotkeyNamesAsWritten(document).keys);
    if (std::exchange(pendingOwnWrite_, std::nullopt) == bytes) {
        return ConfigChangeEvent::ownWriteSuppressed;
    }
    auto config = readConfig(document);
    if (!config && KartoConfig::looksLikeLegacyFormat(bytes)) {
        return fail("layout format changed — open Settings to pick a new layout", true);
    }
    if (!config) {
        return fail(config.error().describe());
    }
    if (const auto valid = config->validate(); !valid) {
        return fail(message(valid.error()));
    }
    current_ = std::make_shared<const KartoConfig>(*std::move(config));
    snapshot_ = current_;
    lastError_.reset();
    isLegacyFormat_ = false;
    if (const auto backedUp = refreshBackup(); !backedUp) {
        log_.append(
            fmt::format("config: could not write backup to {} — {}", backupPath(), backedUp.error().message));
    }
    return ConfigChangeEvent::reloadedFromDisk;
}

ConfigChangeEvent ConfigStore::fail(std::optional<std::string> error, bool isLegacyFormat) {
    lastError_ = std::move(error);
    isLegacyFormat_ = isLegacyFormat;
    return ConfigChangeEvent::reloadFailed;
}

std::expected<void, SaveError> ConfigStore::save(const KartoConfig& config) {
    if (const auto valid = config.validate(); !valid) {
        return invalid(message(valid.error()));
    }
    auto text = TOMLWriter::write(config);
    // A file that the program itself could not read would cost the person the layout.
    if (const auto readable = readConfig(text); !readable) {
        return invalid(fmt::format("this layout cannot be saved — {}", readable.error().describe()));
    }
    const auto target = resolvedPath();
    const auto folder = std::filesystem::path(target).parent_path();
    if (const auto created = files_.createDirectories(folder); !created) {
        return notWritten(target, created.error());
    }
    if (const auto written = files_.writeAtomically(target, text); !written) {
        return notWritten(target, written.error());
    }
    pendingOwnWrite_ = std::move(text);
    current_ = std::make_shared<const KartoConfig>(config);
    lastError_.reset();
    return {};
}

void ConfigStore::takeSnapshot() {
    snapshot_ = current_;
    // Writing waits for the disk, and a window waits to open: what is there already is left.
    if (read() != files_.read(backupPath(), maximumConfigBytes)) {
        std::ignore = refreshBackup();
    }
}

std::expected<void, SaveError> ConfigStore::restoreSnapshot() {
    if (!snapshot_) {
        return {};
    }
    return save(*snapshot_);
}

std::string ConfigStore::resolvedPath() const { return files_.resolvingLinks(path_); }

std::string ConfigStore::backupPath() const { return resolvedPath() + ".bak"; }

FileResult<std::string> ConfigStore::read() const { return files_.read(resolvedPath(), maximumConfigBytes); }

FileResult<void> ConfigStore::refreshBackup() {
    const auto bytes = read();
    if (!bytes) {
        return {};
    }
    return files_.writeAtomically(backupPath(), *bytes);
}

void ConfigStore::watch() {
    auto fileChanges = fileWatch_.watch(path_, callbacks_.wrap([this] {
        reloadAndNotify();
        fileChanges_.reset();
        watchAfter(rearmDelay);
    }));
    fileChanges_ = std::move(fileChanges).value_or(Registration());
    // Nobody reported what happened to the file since it was read last: between two watches, while it was
    // missing, or where nothing more can be watched. Without this look the program could stay on a stale file
    // for ever.
    if (read() != lastRead_) {
        reloadAndNotify();
    }
    if (!fileChanges_ || mayBecomeReadable()) {
        watchAfter(missingFilePoll);
    }
}

void ConfigStore::watchAfter(std::chrono::milliseconds delay) {
    nextAttempt_ = scheduler_.after(delay, callbacks_.wrap([this] { watch(); }));
}

bool ConfigStore::mayBecomeReadable() const {
    return !lastRead_ && lastRead_.error().kind == FileError::Kind::other;
}

void ConfigStore::reloadAndNotify() {
    if (onChange_) {
        onChange_(reload());
    }
}

} // namespace karto
