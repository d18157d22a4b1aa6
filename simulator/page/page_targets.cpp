#include <array>
#include <numbers>
#include <string_view>

#include "simulator/page/page_parts.h"
#include "simulator/page/stroke_font.h"

// The resolution targets of the test page.

namespace simulator {
namespace {

constexpr double kMillimetre = 1 / 25.4;
constexpr TextStyle kCaption{.points = 7, .color = kPaleInk, .weight = 0.11};

struct LineGroup {
  double pairsPerMillimetre;
  std::string_view label;
};

constexpr std::array kLineGroups{
    LineGroup{1, "1"}, LineGroup{1.5, "1.5"}, LineGroup{2, "2"}, LineGroup{2.5, "2.5"},
    LineGroup{3, "3"}, LineGroup{4, "4"},     LineGroup{5, "5"}, LineGroup{6, "6"},
    LineGroup{8, "8"}, LineGroup{10, "10"},
};

void DrawUprightLines(Canvas& canvas, const Box& box, double pairs) {
  const double pitch = kMillimetre / pairs;
  for (double x = box.left; x + pitch / 2 <= box.right; x += pitch) {
    canvas.Fill({x, box.top, x + pitch / 2, box.bottom}, kBlack);
  }
}

void DrawLevelLines(Canvas& canvas, const Box& box, double pairs) {
  const double pitch = kMillimetre / pairs;
  for (double y = box.top; y + pitch / 2 <= box.bottom; y += pitch) {
    canvas.Fill({box.left, y, box.right, y + pitch / 2}, kBlack);
  }
}

void DrawStar(Canvas& canvas, const Point& centre, double radius) {
  constexpr double kSpokes = 36;
  const Box box = Box{centre.x, centre.y, centre.x, centre.y}.Grown(radius + canvas.PixelSize());
  canvas.Paint(box, kBlack, [&](const Point& point) {
    const double x = point.x - centre.x;
    const double y = point.y - centre.y;
    const double distance = Distance(point, centre);
    const double wave = std::sin(std::atan2(y, x) * kSpokes);
    return canvas.ShareInside(wave * distance / kSpokes) * canvas.ShareInside(radius - distance);
  });
  canvas.Ring(centre, radius, 0.008, kBlack);
}

// Rings of equal area: their frequency grows evenly from the middle to the rim, where a ring is
// `finest` wide with its gap.
void DrawZonePlate(Canvas& canvas, const Point& centre, double radius, double finest) {
  const double bend = std::numbers::pi / (radius * finest);
  const Box box = Box{centre.x, centre.y, centre.x, centre.y}.Grown(radius + canvas.PixelSize());
  canvas.Shade(box, [&](const Point& point) {
    const double distance = Distance(point, centre);
    const double level = 0.5 + 0.5 * std::cos(bend * distance * distance);
    const double share = canvas.ShareInside(radius - distance);
    return Mix(kPaper, {level, level, level}, share);
  });
}

void DrawHairlines(Canvas& canvas, const Box& box) {
  double y = box.top + 0.02;
  for (const double points : {0.25, 0.5, 0.75, 1.0, 1.5, 2.0, 3.0}) {
    const double thickness = points / 72;
    canvas.Fill({box.left, y, box.right, y + thickness}, kBlack);
    y += thickness + 0.078;
  }
}

void DrawFan(Canvas& canvas, const Box& box) {
  constexpr int kRays = 15;
  const Point from{box.left, box.bottom};
  for (int i = 0; i <= kRays; ++i) {
    const double angle = std::numbers::pi / 2 * i / kRays;
    const double length = box.Height();
    canvas.Line(
        {from.x + 0.12 * length * std::cos(angle), from.y - 0.12 * length * std::sin(angle)},
        {from.x + length * std::cos(angle), from.y - length * std::sin(angle)}, 0.007, kBlack);
  }
}

void DrawChecks(Canvas& canvas, const Box& box, double size) {
  const auto color = [&](const Point& point) {
    const auto column = static_cast<int>((point.x - box.left) / size);
    const auto row = static_cast<int>((point.y - box.top) / size);
    return (column + row) % 2 == 0 ? kBlack : kPaper;
  };
  for (double y = box.top; y + size / 2 < box.bottom; y += size) {
    for (double x = box.left; x + size / 2 < box.right; x += size) {
      const Box field{x, y, std::min(x + size, box.right), std::min(y + size, box.bottom)};
      canvas.Fill(field, color(field.Middle()));
    }
  }
}

// Printer's dots, 60 to the inch and turned by 45 degrees, that cover `share` of the paper.
void DrawScreen(Canvas& canvas, const Box& box, double share) {
  constexpr double kPitch = 1 / 60.0;
  const double radius = kPitch * std::sqrt(share / std::numbers::pi);
  const double turn = std::numbers::sqrt2 / 2;
  canvas.Paint(box, kBlack, [&](const Point& point) {
    const double u = (point.x - box.left + point.y - box.top) * turn / kPitch;
    const double v = (point.x - box.left - point.y + box.top) * turn / kPitch;
    const double across = (u - std::round(u)) * kPitch;
    const double down = (v - std::round(v)) * kPitch;
    return canvas.ShareInside(radius - Distance({across, down}, {}));
  });
}

}  // namespace

void DrawLineGroups(Canvas& canvas, const Box& box) {
  DrawText(canvas, {box.left, box.top + 0.09}, "LINE PAIRS PER MILLIMETRE", kCaption);
  const double step = (box.Width() + 0.07) / kLineGroups.size();
  const double side = step - 0.07;
  double left = box.left;
  for (const LineGroup& group : kLineGroups) {
    DrawText(canvas, {left + side / 2, box.top + 0.28}, group.label,
             {.points = 8, .color = kInk, .weight = 0.10, .align = Align::kCentre});
    const double top = box.top + 0.34;
    const double middle = (top + box.bottom) / 2;
    DrawUprightLines(canvas, {left, top, left + side, middle - 0.035}, group.pairsPerMillimetre);
    DrawLevelLines(canvas, {left, middle + 0.035, left + side, box.bottom},
                   group.pairsPerMillimetre);
    left += step;
  }
}

void DrawRoundTargets(Canvas& canvas, const Box& box) {
  const double radius = (box.Width() - 0.16) / 4;
  const double y = box.bottom - radius;
  DrawText(canvas, {box.left, box.top + 0.09}, "SIEMENS STAR", kCaption);
  DrawStar(canvas, {box.left + radius, y}, radius);
  DrawText(canvas, {box.right - 2 * radius, box.top + 0.09}, "ZONE PLATE", kCaption);
  DrawZonePlate(canvas, {box.right - radius, y}, radius, 0.02);
}

void DrawFinePatterns(Canvas& canvas, const Box& box) {
  const double bottom = box.bottom - 0.16;
  const auto column = [&](double left, double width) {
    return Box{box.left + left, box.top, box.left + left + width, bottom};
  };
  DrawHairlines(canvas, column(0, 1.2));
  DrawFan(canvas, column(1.35, 0.74));
  DrawChecks(canvas, column(2.22, 0.36), 0.06);
  DrawChecks(canvas, column(2.62, 0.36), 0.03);
  DrawChecks(canvas, column(3.02, 0.36), 0.02);
  constexpr std::array kShares{0.1, 0.25, 0.5, 0.75};
  for (std::size_t i = 0; i < kShares.size(); ++i) {
    DrawScreen(canvas, column(3.55 + 0.475 * static_cast<double>(i), 0.425), kShares[i]);
  }
  const auto caption = [&](double left, std::string_view text) {
    DrawText(canvas, {box.left + left, box.bottom - 0.04}, text, kCaption);
  };
  caption(0, "HAIRLINES 1/4 - 3 PT");
  caption(1.35, "FAN");
  caption(2.22, "CHECKS");
  caption(3.55, "SCREENS 10, 25, 50, 75 %");
}

}  // namespace simulator
