#pragma once

#include <string_view>
#include <vector>

#include "simulator/page/canvas.h"

namespace simulator {

// A letter as a pen draws it, in hundredths of the text size: y upwards from the baseline,
// capitals 70 high, small letters 48.
struct Glyph {
  double left = 0;   // room before the drawing
  double width = 0;  // of the drawing
  double right = 0;  // room behind it
  std::vector<Polyline> lines;

  double Advance() const { return left + width + right; }
};

// The glyph of a printable ASCII character; that of the blank for any other.
const Glyph& GlyphOf(char character);

}  // namespace simulator
