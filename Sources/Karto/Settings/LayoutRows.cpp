#include "Karto/Settings/LayoutRows.h"

#include "KartoCore/LayoutTreeEditing.h"
#include "KartoCore/TreeOrdering.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>

namespace karto {

namespace {

constexpr auto noName = "(no name)";

std::string decimalText(double value, std::string_view decimalPoint) {
    auto text = fmt::format("{:.3f}", value);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.')) {
        text.pop_back();
    }
    if (const auto point = text.find('.'); point != std::string::npos) {
        text.replace(point, 1, decimalPoint);
    }
    return text == "-0" ? "0" : text;
}

} // namespace

std::vector<ZoneRow> zoneRows(const KartoConfig& config, const DisplayInfo& display) {
    std::vector<ZoneRow> rows;
    for (const auto& [layout, zone, order] : TreeOrdering::ringOrder(config.displays)) {
        if (layout.name == display.name && layout.orientation == display.orientation()) {
            rows.push_back({.path = zone.path,
                            .order = order,
                            .rect = zone.rect,
                            .canSplit = LayoutTreeEditing::canSplit(zone.path, layout.root),
                            .canRemove = LayoutTreeEditing::canRemoveZone(zone.path, layout.root)});
        }
    }
    return rows;
}

std::string rectText(const NormRect& rect, std::string_view decimalPoint) {
    const auto text = [&](double value) { return decimalText(value, decimalPoint); };
    return fmt::format("x {}   y {}   w {}   h {}", text(rect.x), text(rect.y), text(rect.w), text(rect.h));
}

std::vector<RingOrderRow> ringOrderRows(const KartoConfig& config, std::span<const DisplayInfo> connected) {
    std::vector<RingOrderRow> rows;
    for (const auto& [layout, zone, order] : TreeOrdering::ringOrder(config.displays)) {
        const bool isConnected = std::ranges::any_of(connected, [&](const DisplayInfo& display) {
            return display.name == layout.name && display.orientation() == layout.orientation;
        });
        rows.push_back({.order = order,
                        .display = layout.name,
                        .orientation = layout.orientation,
                        .path = zone.path,
                        .isPinned = zone.leaf.pinnedOrder.has_value(),
                        .isConnected = isConnected});
    }
    std::ranges::sort(rows, {}, &RingOrderRow::order);
    return rows;
}

std::string nameText(std::string_view display) { return std::string(display.empty() ? noName : display); }

std::string pinHelp(const RingOrderRow& row) {
    return row.isPinned
               ? fmt::format("Number {} is fixed. Click to let it follow the layout again.", row.order)
               : fmt::format("Number {} follows the layout. Click to fix it here.", row.order);
}

void togglePin(const RingOrderRow& row, LayoutEditor& editor) {
    if (row.isPinned) {
        editor.clearPin(row.path, row.display, row.orientation);
    } else {
        editor.pinOrder(row.order, row.path, row.display, row.orientation);
    }
}

void moveRow(std::span<const RingOrderRow> rows, int from, int to, LayoutEditor& editor) {
    if (const auto landing = TreeOrdering::landingOrder(from, to)) {
        const auto& row = rows[static_cast<std::size_t>(from)];
        editor.pinOrder(*landing, row.path, row.display, row.orientation);
    }
}

} // namespace karto
