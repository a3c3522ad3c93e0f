#pragma once

#include <QImage>

namespace karto::drawing {

// How far blurred() carries coverage from where it was, in pixels.
constexpr int blurReach(int radius) { return 3 * radius; }

// The coverage of an image (its alpha) spread softly, as Format_Alpha8. Strengthened by `gain`, where thin
// strokes would fade too much, and never more than full.
QImage blurred(const QImage& canvas, int radius, float gain);

} // namespace karto::drawing
