#pragma once
// A source that holds one configuration, or none, and no file.

#include "Karto/Adapters/ConfigProviding.h"

#include <utility>
#include <vector>

namespace karto::testing {

// The profile "Test" with default shortcuts and overlay.
inline KartoConfig configWith(std::vector<DisplayLayout> displays) {
    KartoConfig config;
    config.profileName = "Test";
    config.displays = std::move(displays);
    return config;
}

class FixedConfig final : public ConfigProviding {
public:
    FixedConfig() = default;

    explicit FixedConfig(std::optional<KartoConfig> config) { set(std::move(config)); }

    std::optional<std::string> error;

    void set(std::optional<KartoConfig> config) {
        current_ = config ? std::make_shared<const KartoConfig>(*std::move(config)) : nullptr;
    }

    [[nodiscard]] const std::string& path() const override { return path_; }

    [[nodiscard]] std::shared_ptr<const KartoConfig> current() const override { return current_; }

    [[nodiscard]] const std::optional<std::string>& lastError() const override { return error; }

    [[nodiscard]] bool isLegacyFormat() const override { return false; }

    void start(std::function<void(ConfigChangeEvent)> /*onChange*/) override {}

    std::expected<void, SaveError> save(const KartoConfig& config) override {
        set(config);
        return {};
    }

    [[nodiscard]] std::shared_ptr<const KartoConfig> snapshot() const override { return snapshot_; }

    void takeSnapshot() override { snapshot_ = current_; }

    std::expected<void, SaveError> restoreSnapshot() override {
        return snapshot_ ? save(*snapshot_) : std::expected<void, SaveError>();
    }

private:
    std::string path_;
    std::shared_ptr<const KartoConfig> current_;
    std::shared_ptr<const KartoConfig> snapshot_;
};

} // namespace karto::testing
