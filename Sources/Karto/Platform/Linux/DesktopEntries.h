#pragma once
// The installed applications as their desktop entries describe them. The folders are read when something is
// first asked for, and again when one of them has changed.

#include "Karto/Platform/InstalledApplications.h"
#include "Karto/Platform/Linux/DesktopEntry.h"

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace karto {

class DesktopEntries final : public InstalledApplications {
public:
    struct Places {
        // Folders of desktop entries; an entry hides those of the same name in later folders.
        std::vector<std::filesystem::path> folders;
        // That of the messages of programs, as in "de_AT.UTF-8".
        std::string locale;

        static Places ofSession();
    };

    // Icons require Qt's application object.
    explicit DesktopEntries(Places places);

    std::optional<std::string> name(std::string_view identity) override;
    std::shared_ptr<const Image> icon(std::string_view identity) override;

private:
    struct Installed {
        DesktopEntry entry;
        // Absent until it is first asked for.
        std::optional<std::shared_ptr<const Image>> icon;
    };

    using EntriesByIdentity = std::map<std::string, DesktopEntry>;

    Installed* find(std::string_view identity);
    void refresh();
    void readFolder(const std::filesystem::path& folder, EntriesByIdentity& found);
    void index(const EntriesByIdentity& found);

    Places places_;
    std::vector<std::string> localeSuffixes_;
    std::map<std::filesystem::path, std::filesystem::file_time_type> folderTimes_;
    std::vector<Installed> installed_;
    std::map<std::string, std::size_t, std::less<>> byIdentity_;
};

} // namespace karto
