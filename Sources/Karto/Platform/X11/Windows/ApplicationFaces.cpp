#include "Karto/Platform/X11/Windows/ApplicationFaces.h"

#include "Karto/Platform/X11/Windows/ApplicationIdentities.h"
#include "Karto/Platform/X11/Windows/Icons.h"

#include <algorithm>
#include <utility>

namespace karto::x11 {

ApplicationFaces::ApplicationFaces(Connection& connection, InstalledApplications& installed)
    : connection_(connection)
    , installed_(installed) {}

std::optional<std::string> ApplicationFaces::name(const Client& client) { return face(client).name; }

std::shared_ptr<const Image> ApplicationFaces::icon(std::span<const Client> windows) {
    if (windows.empty()) {
        return nullptr;
    }
    auto& owner = face(windows.front());
    for (auto client = windows.begin(); client != windows.end() && !owner.icon; ++client) {
        if (auto image = readIcon(connection_, client->window)) {
            owner.icon = std::make_shared<const Image>(*std::move(image));
        }
    }
    for (auto name = owner.identities.begin(); name != owner.identities.end() && !owner.icon; ++name) {
        owner.icon = installed_.icon(*name);
    }
    return owner.icon;
}

void ApplicationFaces::keepOnly(std::span<const Client> listed) {
    std::erase_if(faces_, [&](const auto& entry) {
        const auto& [pid, face] = entry;
        const auto client = std::ranges::find(listed, face.window, &Client::window);
        return client == listed.end() || applicationNumber(*client) != pid;
    });
}

ApplicationFaces::Face& ApplicationFaces::face(const Client& client) {
    auto& face = faces_[applicationNumber(client)];
    // Without identities its window has none, or the server was late with them.
    if (!face.identities.empty()) {
        return face;
    }
    face.window = client.window;
    face.identities = readIdentities(connection_, client.window);
    for (auto name = face.identities.begin(); name != face.identities.end() && !face.name; ++name) {
        face.name = installed_.name(*name);
    }
    if (!face.name && !client.facts.className.empty()) {
        face.name = client.facts.className;
    }
    return face;
}

} // namespace karto::x11
