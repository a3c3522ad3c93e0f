#pragma once
// What one overlay window shows: the numbered zones of its display, or a message in their place.

#include "Karto/Platform/OverlayStage.h"
#include "KartoCore/Geometry.h"
#include "KartoCore/OverlayAppearance.h"
#include "KartoCore/OverlayLayout.h"
#include "KartoCore/Picture.h"

#include <memory>

namespace karto {

struct OverlayContentView {
    OverlayScreenContent content;
    // The display's frame, global points; its origin is the window's top left corner.
    Rect displayFrame;
    OverlayAppearance appearance;

    bool operator==(const OverlayContentView&) const = default;
};

// Keeps the images of the last look, so that equal parts of pictures share them, on all displays and from
// one picture to the next.
class OverlayPainter {
public:
    Picture paint(const OverlayContentView& view, const StageStyle& style);

private:
    class ZonePainter;

    std::shared_ptr<ZonePainter> zones_;
};

} // namespace karto
