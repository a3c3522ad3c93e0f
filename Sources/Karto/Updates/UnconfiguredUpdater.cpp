#include "Karto/Updates/UnconfiguredUpdater.h"

#include <utility>

namespace karto {

void UnconfiguredUpdater::checkForUpdates() {
    // The alert waits for the person, who may ask again meanwhile.
    if (std::exchange(isTelling_, true)) {
        return;
    }
    host_.runAlert({.kind = Alert::Kind::information,
                    .message = "This build of Karto does not look for updates",
                    .informativeText = "It was built without the address of an update feed and the key that "
                                       "updates are signed with. Update it the way you installed it.",
                    .buttons = {"OK"}});
    isTelling_ = false;
}

} // namespace karto
