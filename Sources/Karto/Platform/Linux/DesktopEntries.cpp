#include "Karto/Platform/Linux/DesktopEntries.h"

#include "Karto/Drawing/QtImages.h"

#include <QIcon>
#include <QPixmap>
#include <QStandardPaths>
#include <QString>

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <utility>

namespace karto {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view fileEnding = ".desktop";
constexpr std::uintmax_t largestFile = std::uintmax_t{256} * 1024;
constexpr std::array iconEndings{".png", ".svg", ".xpm"};

std::string lowerCase(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).toLower().toStdString();
}

// The name that an identifier such as "org.example.Editor" ends with.
std::string_view lastComponent(std::string_view identity) { return identity.substr(identity.rfind('.') + 1); }

// An entry in a folder "vendor" is known as "vendor-name".
std::string identityOf(const fs::path& file, const fs::path& folder) {
    auto identity = file.lexically_relative(folder).generic_string();
    identity.resize(identity.size() - fileEnding.size());
    std::ranges::replace(identity, '/', '-');
    return identity;
}

std::string start(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::error_code error;
    const auto size = fs::file_size(file, error);
    std::string text(error ? 0 : std::min<std::uintmax_t>(size, largestFile), '\0');
    stream.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(stream.gcount()));
    return text;
}

// The same for all folders that do not exist.
fs::file_time_type changeTime(const fs::path& folder) {
    std::error_code none;
    return fs::last_write_time(folder, none);
}

QIcon namedIcon(const fs::path& name, const std::vector<fs::path>& folders) {
    if (name.is_absolute()) {
        return QIcon(QString::fromStdString(name.native()));
    }
    // Some entries give a file's name although it may be of any kind.
    const bool isFileName = std::ranges::find(iconEndings, name.extension()) != iconEndings.end();
    const auto bareName = (isFileName ? name.stem() : name).native();
    auto icon = QIcon::fromTheme(QString::fromStdString(bareName));
    // Beside the entries lies the folder of icons of no theme.
    for (const auto& folder : folders) {
        for (const auto* ending : iconEndings) {
            const auto file = folder.parent_path() / "pixmaps" / (bareName + ending);
            if (std::error_code none; icon.isNull() && fs::exists(file, none)) {
                icon = QIcon(QString::fromStdString(file.native()));
            }
        }
    }
    return icon;
}

std::shared_ptr<const Image> loadIcon(const std::string& name, const std::vector<fs::path>& folders) {
    if (name.empty()) {
        return nullptr;
    }
    const auto image =
        namedIcon(name, folders).pixmap(QSize(preferredIconSize, preferredIconSize), 1).toImage();
    return image.isNull() ? nullptr : drawing::shared(image);
}

} // namespace

DesktopEntries::Places DesktopEntries::Places::ofSession() {
    Places places;
    for (const auto& folder : QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation)) {
        places.folders.emplace_back(folder.toStdString());
    }
    for (const auto* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (places.locale.empty()) {
            places.locale = qEnvironmentVariable(variable).toStdString();
        }
    }
    return places;
}

DesktopEntries::DesktopEntries(Places places)
    : places_(std::move(places))
    , localeSuffixes_(localeSuffixes(places_.locale)) {}

std::optional<std::string> DesktopEntries::name(std::string_view identity) {
    const auto* installed = find(identity);
    return installed != nullptr ? std::optional(installed->entry.name) : std::nullopt;
}

std::shared_ptr<const Image> DesktopEntries::icon(std::string_view identity) {
    auto* installed = find(identity);
    if (installed == nullptr) {
        return nullptr;
    }
    if (!installed->icon) {
        installed->icon = loadIcon(installed->entry.icon, places_.folders);
    }
    return *installed->icon;
}

DesktopEntries::Installed* DesktopEntries::find(std::string_view identity) {
    refresh();
    auto found = byIdentity_.find(identity);
    if (found == byIdentity_.end()) {
        found = byIdentity_.find(lowerCase(identity));
    }
    return found != byIdentity_.end() ? &installed_[found->second] : nullptr;
}

void DesktopEntries::refresh() {
    const bool isCurrent = !folderTimes_.empty() && std::ranges::all_of(folderTimes_, [](const auto& folder) {
        return changeTime(folder.first) == folder.second;
    });
    if (isCurrent) {
        return;
    }
    folderTimes_.clear();
    EntriesByIdentity found;
    for (const auto& folder : places_.folders) {
        readFolder(folder, found);
    }
    index(found);
}

void DesktopEntries::readFolder(const fs::path& folder, EntriesByIdentity& found) {
    folderTimes_[folder] = changeTime(folder);
    std::error_code error;
    fs::recursive_directory_iterator file(folder, fs::directory_options::skip_permission_denied, error);
    for (; file != fs::recursive_directory_iterator(); file.increment(error)) {
        const auto& path = file->path();
        if (file->is_directory(error)) {
            folderTimes_[path] = changeTime(path);
        } else if (path.native().ends_with(fileEnding) && file->is_regular_file(error)) {
            if (auto entry = readDesktopEntry(start(path), localeSuffixes_)) {
                found.try_emplace(identityOf(path, folder), *std::move(entry));
            }
        }
    }
}

void DesktopEntries::index(const EntriesByIdentity& found) {
    installed_.clear();
    byIdentity_.clear();
    std::vector<std::string_view> identities;
    // What menus show goes before what they do not.
    for (const bool isHidden : {false, true}) {
        for (const auto& [identity, entry] : found) {
            if (!entry.isDeleted && entry.isHidden == isHidden) {
                identities.push_back(identity);
                installed_.push_back({.entry = entry, .icon = {}});
            }
        }
    }
    const auto add = [&](auto keyOf) {
        for (std::size_t i = 0; i < installed_.size(); ++i) {
            if (auto key = keyOf(i); !key.empty()) {
                byIdentity_.try_emplace(std::move(key), i);
            }
        }
    };
    // The surest first.
    add([&](std::size_t i) { return std::string(identities[i]); });
    add([&](std::size_t i) { return lowerCase(identities[i]); });
    add([&](std::size_t i) { return lowerCase(installed_[i].entry.windowClass); });
    add([&](std::size_t i) { return lowerCase(lastComponent(identities[i])); });
}

} // namespace karto
