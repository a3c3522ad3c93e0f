#include "KartoCore/Snapping.h"

#include "KartoCore/ZoneEditing.h"

#include <array>
#include <cmath>
#include <optional>
#include <unordered_map>
#include <utility>

namespace karto::Snapping {

namespace {

constexpr std::array displayFractions{0.25, 1.0 / 3, 0.5, 2.0 / 3, 0.75};

// Collects the candidates within a stretch of the display, the first of those at one place.
class Collector {
public:
    explicit Collector(const Stretch& stretch)
        : stretch_(stretch) {}

    void add(double displayPosition, CandidateOrigin origin) {
        const double local = (displayPosition - stretch_.start) / stretch_.extent;
        if (0 <= local && local <= 1 && take(local)) {
            candidates_.push_back({.position = local, .origin = origin});
        }
    }

    std::vector<Candidate> candidates() && { return std::move(candidates_); }

private:
    static constexpr double tolerance = 1e-9;

    // False when a place within the tolerance is taken.
    bool take(double position) {
        const std::int64_t cell = std::llround(position / tolerance);
        for (const std::int64_t near : {cell - 1, cell, cell + 1}) {
            const auto taken = taken_.find(near);
            if (taken != taken_.end() && std::abs(taken->second - position) < tolerance) {
                return false;
            }
        }
        taken_.emplace(cell, position);
        return true;
    }

    Stretch stretch_;
    std::vector<Candidate> candidates_;
    // By cells as wide as the tolerance, so that thousands of candidates are not compared with one another.
    std::unordered_map<std::int64_t, double> taken_;
};

std::optional<double> nearest(double position, CandidateOrigin origin, std::span<const Candidate> candidates,
                              const Reach& reach) {
    std::optional<double> best;
    double bestDistance = reach.thresholdInPoints;
    for (const Candidate& candidate : candidates) {
        const double distance = reach.extentInPoints * std::abs(candidate.position - position);
        if (candidate.origin == origin && distance < bestDistance) {
            best = candidate.position;
            bestDistance = distance;
        }
    }
    return best;
}

} // namespace

std::vector<Candidate> candidates(const NodePath& path, const LayoutNode& root, const NormRect& displayFrame,
                                  Axis axis) {
    const std::optional<NormRect> region = root.region(path, displayFrame);
    if (!region || !(along(axis, *region).extent > 0)) {
        return {};
    }
    Collector collector(along(axis, *region));
    ZoneEditing::visitBoundaries(root, displayFrame, [&](const EditBoundary& boundary) {
        if (boundary.axis == axis && boundary.path != path) {
            collector.add(boundary.displayPosition(), CandidateOrigin::boundary);
        }
    });
    for (const double fraction : displayFractions) {
        collector.add(fraction, CandidateOrigin::fraction);
    }
    return std::move(collector).candidates();
}

double resolve(double position, std::span<const Candidate> candidates, const Reach& reach) {
    const auto boundary = nearest(position, CandidateOrigin::boundary, candidates, reach);
    const auto fraction = nearest(position, CandidateOrigin::fraction, candidates, reach);
    return boundary.value_or(fraction.value_or(position));
}

} // namespace karto::Snapping
