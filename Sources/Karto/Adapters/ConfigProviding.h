#pragma once
// The one source of the configuration for every service.

#include "KartoCore/Config.h"

#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>

namespace karto {

// The outcome of one reload.
enum class ConfigChangeEvent : std::uint8_t {
    // The file holds exactly what this program wrote last; nothing was reloaded.
    ownWriteSuppressed,
    reloadedFromDisk,
    // The configuration in force stays what it was.
    reloadFailed,
};

// Why a configuration was not saved; the message is final.
struct SaveError {
    enum class Kind : std::uint8_t { invalidConfiguration, notWritten };

    std::string message;
    Kind kind = Kind::notWritten;

    bool operator==(const SaveError&) const = default;
};

class ConfigProviding {
public:
    virtual ~ConfigProviding() = default;

    [[nodiscard]] virtual const std::string& path() const = 0;
    // The configuration in force; null when none was loaded. Never changes behind the pointer.
    [[nodiscard]] virtual std::shared_ptr<const KartoConfig> current() const = 0;
    // The message of the last failed reload; absent after a good one and when there is no file.
    [[nodiscard]] virtual const std::optional<std::string>& lastError() const = 0;
    // The last reload failed on a file of the old flat format.
    [[nodiscard]] virtual bool isLegacyFormat() const = 0;

    // Loads the configuration and watches its file; onChange hears of every later reload.
    virtual void start(std::function<void(ConfigChangeEvent)> onChange) = 0;
    // Checks, writes and adopts a configuration; nothing changes when it fails.
    virtual std::expected<void, SaveError> save(const KartoConfig& config) = 0;

    // The configuration to go back to; null when there is none.
    [[nodiscard]] virtual std::shared_ptr<const KartoConfig> snapshot() const = 0;
    // Remembers the configuration in force and refreshes the backup of the file.
    virtual void takeSnapshot() = 0;
    // Saves the snapshot; nothing without one.
    virtual std::expected<void, SaveError> restoreSnapshot() = 0;

    // The key of every configurable command; the defaults without a usable configuration.
    [[nodiscard]] CommandKeyMap commandKeys() const;
    // The hyper combination; all four modifiers without a usable configuration.
    [[nodiscard]] ModifierSet hotkeyModifiers() const;
};

} // namespace karto
