#pragma once
// The one owner of the configuration file: loads, checks, watches, saves and backs it up. The configuration
// in force only ever moves from one good configuration to the next; a file that is broken, gone or of the old
// format leaves it as it is.

#include "Karto/Adapters/ConfigProviding.h"
#include "Karto/Log.h"
#include "Karto/Platform/FileSystem.h"
#include "Karto/Platform/FileWatch.h"
#include "Karto/Platform/Scheduler.h"
#include "Karto/Platform/WeakCallbacks.h"
#include "KartoCore/HotkeyNameMigration.h"

#include <chrono>
#include <string_view>
#include <vector>

namespace karto {

class ConfigStore final : public ConfigProviding {
public:
    // Below the home directory.
    static constexpr std::string_view relativePath = ".config/karto/config.toml";

    // path: the configuration file, absolute. Links on the way are followed afresh each time, so a file that
    // is a link is read, written and watched where the link leads.
    ConfigStore(std::string path, FileSystem& files, FileWatch& fileWatch, Scheduler& scheduler,
                CheckLog& log);

    [[nodiscard]] const std::string& path() const override { return path_; }

    [[nodiscard]] std::shared_ptr<const KartoConfig> current() const override { return current_; }

    [[nodiscard]] const std::optional<std::string>& lastError() const override { return lastError_; }

    [[nodiscard]] bool isLegacyFormat() const override { return isLegacyFormat_; }

    [[nodiscard]] std::shared_ptr<const KartoConfig> snapshot() const override { return snapshot_; }

    // The old hotkey names in the file that was read last, whether or not the rest of it was good.
    [[nodiscard]] const std::vector<HotkeyNameMigration::Rename>& renamedHotkeyNames() const {
        return renamedHotkeyNames_;
    }

    void start(std::function<void(ConfigChangeEvent)> onChange) override;

    // Reads the file now; nobody is notified.
    ConfigChangeEvent reload();

    std::expected<void, SaveError> save(const KartoConfig& config) override;
    void takeSnapshot() override;
    std::expected<void, SaveError> restoreSnapshot() override;

private:
    [[nodiscard]] std::string resolvedPath() const;
    [[nodiscard]] std::string backupPath() const;
    [[nodiscard]] FileResult<std::string> read() const;
    ConfigChangeEvent take(const std::string& bytes);
    ConfigChangeEvent fail(std::optional<std::string> error, bool isLegacyFormat = false);
    // Nothing without a file; an error when the copy cannot be written.
    FileResult<void> refreshBackup();

    void watch();
    void watchAfter(std::chrono::milliseconds delay);
    // The last read failed for a reason that may pass without a change of the file, such as too many open
    // files.
    [[nodiscard]] bool mayBecomeReadable() const;
    void reloadAndNotify();

    std::string path_;
    FileSystem& files_;
    FileWatch& fileWatch_;
    Scheduler& scheduler_;
    CheckLog& log_;

    std::shared_ptr<const KartoConfig> current_;
    std::vector<HotkeyNameMigration::Rename> renamedHotkeyNames_;
    std::optional<std::string> lastError_;
    bool isLegacyFormat_ = false;
    std::shared_ptr<const KartoConfig> snapshot_;

    std::function<void(ConfigChangeEvent)> onChange_;
    bool isStarted_ = false;
    // What the last reload found at the path.
    FileResult<std::string> lastRead_;
    // The text of the last save, until a reload has read the file.
    std::optional<std::string> pendingOwnWrite_;

    // Unless the file is watched and could be read, the next attempt is scheduled.
    Registration fileChanges_;
    Registration nextAttempt_;
    WeakCallbacks callbacks_;
};

} // namespace karto
