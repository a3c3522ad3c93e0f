#pragma once
// What a person knows applications by: their names and icons. They are kept while the application has the
// window that they were read from; icons are large to read.

#include "Karto/Platform/Accessibility.h"
#include "Karto/Platform/InstalledApplications.h"
#include "Karto/Platform/X11/Server/Connection.h"
#include "Karto/Platform/X11/Windows/Client.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace karto::x11 {

class ApplicationFaces {
public:
    ApplicationFaces(Connection& connection, InstalledApplications& installed);

    // Of the application with that window; absent when nothing tells it.
    [[nodiscard]] std::optional<std::string> name(const Client& client);
    // windows: all of one application, the topmost first. Null when none has an icon.
    [[nodiscard]] std::shared_ptr<const Image> icon(std::span<const Client> windows);

    // Forgets applications whose window is not listed any more.
    void keepOnly(std::span<const Client> listed);

private:
    struct Face {
        xcb_window_t window = XCB_WINDOW_NONE;
        std::vector<std::string> identities;
        std::optional<std::string> name;
        // Null until one is found.
        std::shared_ptr<const Image> icon;
    };

    Face& face(const Client& client);

    Connection& connection_;
    InstalledApplications& installed_;
    // By the application's number.
    std::map<std::int32_t, Face> faces_;
};

} // namespace karto::x11
