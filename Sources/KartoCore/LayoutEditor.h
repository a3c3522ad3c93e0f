#pragma once
// A configuration being edited, with its history. An operation that finds nothing to change changes nothing
// and makes no undo step: no layout of that display and orientation, a path to the wrong kind of node, a
// command whose key is fixed. What it makes is not validated.
// Live changes go ahead of the history until a commit records them all as one step.

#include "KartoCore/CommandKey.h"
#include "KartoCore/Config.h"
#include "KartoCore/EditHistory.h"
#include "KartoCore/KartoCommand.h"
#include "KartoCore/LayoutPresets.h"
#include "KartoCore/LayoutTree.h"
#include "KartoCore/OverlayAppearance.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace karto {

class LayoutEditor {
public:
    explicit LayoutEditor(KartoConfig config);
    // Starts with nothing but a profile name.
    static LayoutEditor empty(std::string profileName);

    // As edited, live changes included.
    [[nodiscard]] const KartoConfig& config() const { return config_; }

    [[nodiscard]] const EditHistory<KartoConfig>& history() const { return history_; }

    void split(const NodePath& path, std::string_view display, Orientation orientation, Axis axis);
    void removeZone(const NodePath& path, std::string_view display, Orientation orientation);

    void moveBoundaryLive(const NodePath& path, std::string_view display, Orientation orientation, double at);
    void commitBoundaryDrag();

    // Gives the display the preset's tree; a display without a layout of that orientation gets one, listed
    // last.
    void applyPreset(const LayoutPreset& preset, std::string_view display, Orientation orientation);

    // Pins the zone to `order` as given and takes every other pin that claims that number away, on all
    // displays.
    void pinOrder(std::int64_t order, const NodePath& path, std::string_view display,
                  Orientation orientation);
    void clearPin(const NodePath& path, std::string_view display, Orientation orientation);

    void setModifiers(std::vector<std::string> names);
    void setCommandKey(const CommandKey& key, const KartoCommand& command);
    // Back to the command's default key.
    void resetCommandKey(const KartoCommand& command);

    void setOverlayAppearance(const OverlayAppearance& appearance);
    void setOverlayAppearanceLive(const OverlayAppearance& appearance);
    void commitOverlayAppearanceDrag();
    void resetOverlayAppearance();

    [[nodiscard]] bool canUndo() const { return history_.canUndo(); }

    [[nodiscard]] bool canRedo() const { return history_.canRedo(); }

    // Both restore the whole configuration; live changes that were not committed are lost.
    void undo();
    void redo();

    // The history does not count.
    bool operator==(const LayoutEditor& other) const { return config_ == other.config_; }

private:
    // The first layout of that display and orientation; null when there is none.
    DisplayLayout* layout(std::string_view display, Orientation orientation);

    void record() { history_.record(config_); }

    KartoConfig config_;
    EditHistory<KartoConfig> history_;
};

} // namespace karto
