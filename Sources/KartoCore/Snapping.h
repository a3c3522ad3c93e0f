#pragma once
// Where a dragged boundary snaps to: in line with other boundaries, and at round fractions of the display.

#include "KartoCore/LayoutTree.h"

#include <cstdint>
#include <span>
#include <vector>

namespace karto::Snapping {

enum class Mode : std::uint8_t { off, on };

enum class CandidateOrigin : std::uint8_t { fraction, boundary };

struct Candidate {
    // Fraction of the dragged split's region, 0...1.
    double position = 0;
    CandidateOrigin origin = CandidateOrigin::fraction;

    bool operator==(const Candidate&) const = default;
};

// What the split at `path` may snap to along `axis`: first the other boundaries of that axis in tree order,
// wherever on the display they lie, then quarters and thirds of the display; each position once.
// displayFrame: the whole tree's region. Empty when the path leads nowhere or to a region without extent.
std::vector<Candidate> candidates(const NodePath& path, const LayoutNode& root, const NormRect& displayFrame,
                                  Axis axis);

struct Reach {
    // The dragged split's size along the drag.
    double extentInPoints = 0;
    // Candidates at this distance and beyond are not taken.
    double thresholdInPoints = 0;
};

// The nearest boundary within reach, else the nearest fraction within reach, else the position as it is; the
// earlier candidate on a tie.
double resolve(double position, std::span<const Candidate> candidates, const Reach& reach);

} // namespace karto::Snapping
