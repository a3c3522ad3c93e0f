#pragma once
// What one overlay window shows: the numbered zones of its display, or a message in their place, and the
// layer on which the zones are edited.

#include "Karto/Overlay/ZoneEditingView.h"
#include "Karto/Platform/OverlayStage.h"
#include "KartoCore/Geometry.h"
#include "KartoCore/OverlayAppearance.h"
#include "KartoCore/OverlayLayout.h"
#include "KartoCore/Picture.h"

#include <memory>
#include <optional>

namespace karto {

struct OverlayContentView {
    OverlayScreenContent content;
    // The display's frame, global points; its origin is the window's top left corner.
    Rect displayFrame;
    OverlayAppearance appearance;
    std::optional<ZoneEditingView> editing;

    bool operator==(const OverlayContentView&) const = default;
};

// Keeps the images of the last look, so that equal parts of pictures share them, on all displays and from
// one picture to the next.
class OverlayPainter {
public:
    Picture paint(const OverlayContentView& view, const StageStyle& style);

private:
    class ZonePainter;

    Picture paintContent(const OverlayContentView& view, const StageStyle& style);

    std::shared_ptr<ZonePainter> zones_;
    std::optional<ZoneEditingPainter> editing_;
};

} // namespace karto
