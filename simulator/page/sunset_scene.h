#pragma once

#include "simulator/page/canvas.h"

namespace simulator {

// Draws a photograph-like picture into the box: the sun sets behind mountains and a lake. Made for
// a box of about 3 to 2.
void DrawSunsetScene(Canvas& canvas, const Box& box);

}  // namespace simulator
