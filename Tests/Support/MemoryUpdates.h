#pragma once
// What an update needs, in memory: a key that signs feeds, a server that answers when the test says so, a
// store, an installer and a window.

#include "Karto/Platform/UpdateFetcher.h"
#include "Karto/Platform/UpdateInstaller.h"
#include "Karto/Platform/UpdateStore.h"
#include "Karto/Updates/UpdateFeed.h"
#include "Karto/Updates/UpdateView.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace karto::testing {

class FeedSigner {
public:
    // Equal seeds make equal keys.
    explicit FeedSigner(std::uint8_t seed);

    [[nodiscard]] const FeedKey& key() const { return key_; }

    // The text with its signature before it.
    [[nodiscard]] std::string sign(const std::string& text) const;

private:
    FeedKey key_;
    std::array<std::uint8_t, 64> secret_{};
};

// The text of a feed for these bytes of a package.
struct FeedText {
    std::string version = "2.0";
    std::string date = "2026-11-20T12:00:00Z";
    std::string believedUntil = "2027-03-01T00:00:00Z";
    std::string package = "the bytes of a package";

    [[nodiscard]] std::string text() const;
};

class ManualFetcher final : public UpdateFetcher {
public:
    std::vector<FetchRequest> requests;
    // Of the fetch that goes on.
    std::optional<FetchReport> report;

    Registration fetch(const FetchRequest& request, FetchReport newReport) override;

    // These do nothing when no fetch goes on, or no more.
    void send(std::uint64_t offset, const std::string& bytes) const;
    void end(const std::optional<std::string>& problem = {}) const;
    // A whole answer.
    void answer(const std::string& bytes) const;
};

class MemoryUpdateStore final : public UpdateStore {
public:
    std::string name;
    std::string bytes;
    int cleared = 0;
    // Why nothing can be stored.
    std::optional<std::string> problem;

    std::expected<std::uint64_t, std::string> open(const std::string& newName) override;
    std::expected<void, std::string> append(std::string_view added) override;
    std::expected<void, std::string> startOver() override;
    std::expected<void, std::string> read(const std::function<void(std::string_view)>& onBytes) override;
    std::expected<std::string, std::string> finish() override;

    void close() override {}

    void clear() override;
};

class ManualInstaller final : public UpdateInstaller {
public:
    bool isPackaged = true;
    std::vector<std::string> packages;
    std::function<void(const InstallOutcome&)> onEnd;
    std::vector<std::string> shown;
    int restarts = 0;

    bool replacesProgram() override { return isPackaged; }

    Registration install(const std::string& package, std::function<void(const InstallOutcome&)> end) override;

    void end(InstallOutcome::Kind kind, const std::string& problem = {}) const;

    void showFile(const std::string& path) override { shown.push_back(path); }

    void openPage(const std::string& address) override { shown.push_back(address); }

    void restart() override { ++restarts; }
};

class MemoryUpdateWindow final : public UpdateWindow {
public:
    // Absent while it is closed.
    std::optional<UpdateView> view;
    int asked = 0;

    void show(const UpdateView& newView, bool isAsked) override {
        view = newView;
        asked += isAsked ? 1 : 0;
    }

    void close() override { view.reset(); }

    [[nodiscard]] std::string heading() const { return view ? view->heading : "closed"; }
};

} // namespace karto::testing
