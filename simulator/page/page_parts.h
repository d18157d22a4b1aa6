#pragma once

#include "simulator/page/canvas.h"

namespace simulator {

// The parts of the test page, each drawn into a box of the page or along its edges.

inline constexpr double kPageWidth = 8.5;
inline constexpr double kPageHeight = 11;
inline constexpr Color kInk = Rgb(0x1A1A1E);
inline constexpr Color kPaleInk = Rgb(0x6A6A72);

// Inches along the top and the left edge, millimetres along the bottom and the right edge.
void DrawRulers(Canvas& canvas);

// A bracket, a sign of its own shape and colour and the name of the corner, in each corner.
void DrawCornerMarks(Canvas& canvas);

void DrawTitle(Canvas& canvas, const Box& box);
void DrawTextSamples(Canvas& canvas, const Box& box);
void DrawColorChart(Canvas& canvas, const Box& box);
void DrawRamps(Canvas& canvas, const Box& box);
void DrawLineGroups(Canvas& canvas, const Box& box);
void DrawRoundTargets(Canvas& canvas, const Box& box);  // Siemens star and zone plate
void DrawFinePatterns(Canvas& canvas, const Box& box);  // hairlines, fan, checks and screens

}  // namespace simulator
