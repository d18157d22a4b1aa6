#pragma once

#include <string_view>

#include "simulator/page/canvas.h"

namespace simulator {

enum class Align { kLeft, kCentre, kRight };

// How text is set. Sizes are in points, 72 to the inch, of which capitals are 0.7 high.
struct TextStyle {
  double points = 10;
  Color color = kBlack;
  double weight = 0.085;  // thickness of the pen, as a share of the size
  Align align = Align::kLeft;
};

inline constexpr double kBold = 0.125;

// Inches that the pen moves from the left of the first letter to the right of the last.
double TextWidth(std::string_view text, double points);

// Draws one line of printable ASCII; `at` is on the baseline, at the edge or in the middle that
// the alignment names. Other characters come out as blanks.
void DrawText(Canvas& canvas, const Point& at, std::string_view text, const TextStyle& style);

}  // namespace simulator
