#pragma once
// The layer above the zones of a display on which they are edited: a strip along every boundary, buttons in
// the zone under the pointer, and a label beside a boundary that is dragged.

#include "Karto/Overlay/EditingSpace.h"
#include "Karto/Overlay/ZoneButtons.h"
#include "Karto/Platform/OverlayStage.h"
#include "KartoCore/Geometry.h"
#include "KartoCore/LayoutTree.h"
#include "KartoCore/Picture.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace karto {

struct ZoneEditingView {
    LayoutNode root;
    // The boundary that is dragged, and the pointer, in pixels of the window; absent without a drag.
    std::optional<NodePath> dragging;
    std::optional<Point> pointer;
    // The boundary whose strip is marked: the dragged one or the one under the pointer.
    std::optional<NodePath> hot;
    // The zone whose buttons are shown, and the button under the pointer.
    std::optional<NodePath> buttonsFor;
    std::optional<ZoneButton> pointedAt;
    bool isPressed = false;
    bool showsHelp = false;

    [[nodiscard]] std::optional<NormRect> zoneWithButtons() const;

    bool operator==(const ZoneEditingView&) const = default;
};

// Keeps the images of the last style: of all that follows the pointer only the label is painted anew.
class ZoneEditingPainter {
public:
    explicit ZoneEditingPainter(const StageStyle& style)
        : style_(style) {}

    [[nodiscard]] const StageStyle& style() const { return style_; }

    // extent: of the window, in pixels.
    void paint(Picture& picture, const ZoneEditingView& view, const Size& extent);

private:
    enum class ButtonState : std::uint8_t { disabled, enabled, pointedAt, pressed };

    struct PaintedReadout {
        std::string text;
        std::shared_ptr<const Image> image;
    };

    void paintStrips(Picture& picture, const ZoneEditingView& view, const EditingSpace& space) const;
    void paintReadout(Picture& picture, const ZoneEditingView& view, const EditingSpace& space);
    void paintButtons(Picture& picture, const ZoneEditingView& view, const EditingSpace& space);
    [[nodiscard]] std::shared_ptr<const Image> paintButton(ZoneButton button, ButtonState state) const;
    void paintHelp(Picture& picture, std::string_view text, const PixelRect& button,
                   const EditingSpace& space);

    StageStyle style_;
    std::map<std::pair<ZoneButton, ButtonState>, std::shared_ptr<const Image>> buttons_;
    std::map<std::string, std::shared_ptr<const Image>, std::less<>> helps_;
    PaintedReadout readout_;
};

} // namespace karto
