#pragma once
// The faces that pictures are lettered in. Sizes are pixels of a picture.

#include <QFont>

namespace karto::drawing {

// The desktop's own.
QFont systemFont(double size, QFont::Weight weight);

// One with rounded strokes if the machine has it, else the desktop's own.
QFont roundedFont(double size, QFont::Weight weight);

} // namespace karto::drawing
