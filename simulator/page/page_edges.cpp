#include <array>
#include <string>

#include "simulator/page/page_parts.h"
#include "simulator/page/stroke_font.h"

// What lies along the edges and in the corners of the test page.

namespace simulator {
namespace {

constexpr double kInset = 0.52;  // of the corner marks from both edges
constexpr double kMillimetre = 1 / 25.4;

// One tick: a place along an edge, the depth into the page.
using DrawTick = void (*)(Canvas& canvas, double along, double depth, double thickness);

void TickAtTop(Canvas& canvas, double x, double depth, double thickness) {
  canvas.Fill({x - thickness / 2, 0, x + thickness / 2, depth}, kInk);
}

void TickAtBottom(Canvas& canvas, double x, double depth, double thickness) {
  canvas.Fill({x - thickness / 2, kPageHeight - depth, x + thickness / 2, kPageHeight}, kInk);
}

void TickAtLeft(Canvas& canvas, double y, double depth, double thickness) {
  canvas.Fill({0, y - thickness / 2, depth, y + thickness / 2}, kInk);
}

void TickAtRight(Canvas& canvas, double y, double depth, double thickness) {
  canvas.Fill({kPageWidth - depth, y - thickness / 2, kPageWidth, y + thickness / 2}, kInk);
}

double InchTickDepth(int sixteenths) {
  if (sixteenths % 16 == 0) return 0.24;
  if (sixteenths % 8 == 0) return 0.18;
  if (sixteenths % 4 == 0) return 0.14;
  return sixteenths % 2 == 0 ? 0.10 : 0.06;
}

double MillimetreTickDepth(int millimetres) {
  if (millimetres % 10 == 0) return 0.24;
  return millimetres % 5 == 0 ? 0.16 : 0.09;
}

// The ticks leave the corners of the paper free, where those of two rulers would cross.
constexpr double kFree = 0.25;

void DrawInchTicks(Canvas& canvas, double length, DrawTick tick) {
  for (int i = 4; i / 16.0 <= length - kFree; ++i) {
    tick(canvas, i / 16.0, InchTickDepth(i), i % 16 == 0 ? 0.012 : 0.007);
  }
}

void DrawMillimetreTicks(Canvas& canvas, double length, DrawTick tick) {
  for (int i = 7; i * kMillimetre <= length - kFree; ++i) {
    tick(canvas, i * kMillimetre, MillimetreTickDepth(i), i % 10 == 0 ? 0.012 : 0.006);
  }
}

constexpr TextStyle kNumber{.points = 8.5, .color = kInk, .weight = 0.10, .align = Align::kCentre};

void DrawInchNumbers(Canvas& canvas) {
  for (int i = 1; i < kPageWidth; ++i) {
    DrawText(canvas, {static_cast<double>(i), 0.36}, std::to_string(i), kNumber);
  }
  for (int i = 1; i < kPageHeight; ++i) {
    DrawText(canvas, {0.33, i + 0.042}, std::to_string(i), kNumber);
  }
  DrawText(canvas, {1.5, 0.36}, "inches",
           {.points = 7, .color = kPaleInk, .align = Align::kCentre});
}

void DrawMillimetreNumbers(Canvas& canvas) {
  TextStyle style = kNumber;
  style.points = 6.5;
  for (int i = 10; i * kMillimetre < kPageWidth - 0.4; i += 10) {
    DrawText(canvas, {i * kMillimetre, kPageHeight - 0.285}, std::to_string(i), style);
  }
  for (int i = 10; i * kMillimetre < kPageHeight - 0.4; i += 10) {
    DrawText(canvas, {kPageWidth - 0.355, i * kMillimetre + 0.032}, std::to_string(i), style);
  }
  DrawText(canvas, {35 * kMillimetre, kPageHeight - 0.285}, "mm",
           {.points = 6.5, .color = kPaleInk, .align = Align::kCentre});
}

// Two thick arms along the edges, `towards` the middle of the page from `corner`.
void DrawBracket(Canvas& canvas, const Point& corner, const Point& towards, const Color& color) {
  constexpr double kLength = 0.86;
  constexpr double kThickness = 0.055;
  const auto arm = [&](double width, double height) {
    const double x = corner.x + towards.x * width;
    const double y = corner.y + towards.y * height;
    canvas.Fill({std::min(corner.x, x), std::min(corner.y, y), std::max(corner.x, x),
                 std::max(corner.y, y)},
                color);
  };
  arm(kLength, kThickness);
  arm(kThickness, kLength);
}

void DrawTargetSign(Canvas& canvas, const Point& at, const Color& color) {
  canvas.Disc(at, 0.25, color);
  canvas.Disc(at, 0.18, kPaper);
  canvas.Disc(at, 0.11, color);
  canvas.Disc(at, 0.035, kPaper);
}

void DrawSquareSign(Canvas& canvas, const Point& at, const Color& color) {
  const Box box{at.x, at.y, at.x, at.y};
  canvas.Fill(box.Grown(0.23), color);
  canvas.Fill(box.Grown(0.15), kPaper);
  canvas.Fill({at.x, at.y - 0.11, at.x + 0.11, at.y}, color);
  canvas.Fill({at.x - 0.11, at.y, at.x, at.y + 0.11}, color);
}

void DrawTriangleSign(Canvas& canvas, const Point& at, const Color& color) {
  const auto triangle = [&](double size, const Color& ink) {
    canvas.Polygon(
        std::array{Point{at.x, at.y - size}, Point{at.x + size * 0.95, at.y + size * 0.75},
                   Point{at.x - size * 0.95, at.y + size * 0.75}},
        ink);
  };
  triangle(0.28, color);
  triangle(0.14, kPaper);
}

void DrawDiamondSign(Canvas& canvas, const Point& at, const Color& color) {
  const auto diamond = [&](double size, const Color& ink) {
    canvas.Polygon(std::array{Point{at.x, at.y - size}, Point{at.x + size, at.y},
                              Point{at.x, at.y + size}, Point{at.x - size, at.y}},
                   ink);
  };
  diamond(0.28, color);
  diamond(0.17, kPaper);
  diamond(0.09, color);
}

struct Corner {
  Point corner;
  Point towards;
  Color color;
  void (*drawSign)(Canvas& canvas, const Point& at, const Color& color);
  const char* name;
};

constexpr std::array kCorners{
    Corner{{kInset, kInset}, {1, 1}, Rgb(0xC8202F), DrawTargetSign, "TOP LEFT"},
    Corner{{kPageWidth - kInset, kInset}, {-1, 1}, Rgb(0x12803C), DrawSquareSign, "TOP RIGHT"},
    Corner{{kInset, kPageHeight - kInset}, {1, -1}, Rgb(0x1F4FB4), DrawTriangleSign, "BOTTOM LEFT"},
    Corner{{kPageWidth - kInset, kPageHeight - kInset},
           {-1, -1},
           Rgb(0xE07A10),
           DrawDiamondSign,
           "BOTTOM RIGHT"},
};

}  // namespace

void DrawRulers(Canvas& canvas) {
  DrawInchTicks(canvas, kPageWidth, TickAtTop);
  DrawInchTicks(canvas, kPageHeight, TickAtLeft);
  DrawMillimetreTicks(canvas, kPageWidth, TickAtBottom);
  DrawMillimetreTicks(canvas, kPageHeight, TickAtRight);
  DrawInchNumbers(canvas);
  DrawMillimetreNumbers(canvas);
}

void DrawCornerMarks(Canvas& canvas) {
  for (const Corner& corner : kCorners) {
    const Point middle{corner.corner.x + corner.towards.x * 0.48,
                       corner.corner.y + corner.towards.y * 0.42};
    DrawBracket(canvas, corner.corner, corner.towards, corner.color);
    corner.drawSign(canvas, middle, corner.color);
    const double below = corner.towards.y > 0 ? 0.40 : 0.36;
    DrawText(canvas, {middle.x, middle.y + corner.towards.y * below + 0.02}, corner.name,
             {.points = 6.5, .color = corner.color, .weight = kBold, .align = Align::kCentre});
  }
}

}  // namespace simulator
