#pragma once
// Start at login by an entry in the person's autostart folder. An entry of Karto's name is Karto's, whoever
// wrote it, when it starts a program called karto; any other one is left alone.

#include "Karto/Platform/FileSystem.h"
#include "Karto/Platform/Linux/AutostartEntry.h"
#include "Karto/Platform/LoginItemService.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace karto {

class XdgAutostart final : public LoginItemService {
public:
    struct Places {
        // The person's own folder.
        std::string folder;
        // Those of the system, whose entries the person's hide.
        std::vector<std::string> systemFolders;
        // The program that runs now.
        std::string program;

        // home: the person's home directory.
        static Places ofSession(const std::string& home);
    };

    XdgAutostart(FileSystem& files, Places places, std::function<void()> openSettings);

    LoginItemStatus status() override;
    std::expected<void, std::string> registerItem() override;
    std::expected<void, std::string> unregisterItem() override;

    void openSettings() override { openSettings_(); }

private:
    [[nodiscard]] std::string path() const;
    // Absent without a file; an entry without a program stands for one that cannot be read.
    [[nodiscard]] std::optional<AutostartEntry> entryAt(const std::string& path);
    [[nodiscard]] bool startsKarto(const AutostartEntry& entry);
    [[nodiscard]] bool isForeign(const AutostartEntry& entry) const;
    // The system's entry that starts Karto; absent without one.
    [[nodiscard]] std::optional<std::string> systemEntry();
    // The person's entry, to be changed; absent without one. The error says why it must be left as it is.
    [[nodiscard]] std::expected<std::optional<AutostartEntry>, std::string> ownEntry();
    [[nodiscard]] std::unexpected<std::string> failure(const FileError& error) const;

    FileSystem& files_;
    Places places_;
    std::function<void()> openSettings_;
};

} // namespace karto
