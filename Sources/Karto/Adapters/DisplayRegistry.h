#pragma once
// The connected displays, read once after every change of the screens.

#include "Karto/Adapters/DisplayProviding.h"
#include "Karto/Platform/Registration.h"
#include "Karto/Platform/Screens.h"
#include "Karto/Platform/WeakCallbacks.h"

#include <optional>
#include <vector>

namespace karto {

// The screens as displays, read now.
std::vector<DisplayInfo> readDisplays(Screens& screens);

class DisplayRegistry final : public DisplayProviding {
public:
    explicit DisplayRegistry(Screens& screens);

    const std::vector<DisplayInfo>& displays() override;

    // A rectangle of a space whose y grows upward from the bottom of the primary screen, in global points.
    static Rect flip(const Rect& rect, const Rect& primaryScreen);

private:
    Screens& screens_;
    std::optional<std::vector<DisplayInfo>> cache_;
    Registration changes_;
    WeakCallbacks callbacks_;
};

} // namespace karto
