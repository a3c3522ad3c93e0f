#pragma once
// What one overlay window shows: the numbered zones of its display, or a message in their place.

#include "Karto/Platform/OverlayStage.h"
#include "Karto/Platform/Picture.h"
#include "KartoCore/Geometry.h"
#include "KartoCore/OverlayAppearance.h"
#include "KartoCore/OverlayLayout.h"

namespace karto {

struct OverlayContentView {
    OverlayScreenContent content;
    // The display's frame, global points; its origin is the window's top left corner.
    Rect displayFrame;
    OverlayAppearance appearance;

    bool operator==(const OverlayContentView&) const = default;
};

Picture paint(const OverlayContentView& view, const StageStyle& style);

} // namespace karto
