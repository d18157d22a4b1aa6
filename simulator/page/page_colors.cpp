#include <array>
#include <string>
#include <string_view>

#include "simulator/page/page_parts.h"
#include "simulator/page/stroke_font.h"

// The colour chart and the ramps of the test page.

namespace simulator {
namespace {

struct Patch {
  std::string_view name;
  Color color;
};

struct Group {
  std::string_view title;
  std::span<const Patch> patches;
};

constexpr std::array kPrimaries{Patch{"Red", Rgb(0xFF0000)}, Patch{"Green", Rgb(0x00FF00)},
                                Patch{"Blue", Rgb(0x0000FF)}};
constexpr std::array kSecondaries{Patch{"Cyan", Rgb(0x00FFFF)}, Patch{"Magenta", Rgb(0xFF00FF)},
                                  Patch{"Yellow", Rgb(0xFFFF00)}};
constexpr std::array kSkinTones{
    Patch{"Porcelain", Rgb(0xF6DCCB)}, Patch{"Sand", Rgb(0xE8BE9F)},
    Patch{"Honey", Rgb(0xD39E73)},     Patch{"Caramel", Rgb(0xAE7748)},
    Patch{"Chestnut", Rgb(0x7F4F30)},  Patch{"Espresso", Rgb(0x4B2E20)}};
constexpr std::array kPastels{Patch{"Rose", Rgb(0xF7C5CE)},  Patch{"Peach", Rgb(0xFBD5B5)},
                              Patch{"Lemon", Rgb(0xFBF3B4)}, Patch{"Mint", Rgb(0xC3EBCF)},
                              Patch{"Sky", Rgb(0xBEDFF5)},   Patch{"Lilac", Rgb(0xD9CBEF)}};
constexpr std::array kNature{Patch{"Brick", Rgb(0xA5402D)}, Patch{"Ochre", Rgb(0xD29A2E)},
                             Patch{"Grass", Rgb(0x6C9C3A)}, Patch{"Fir", Rgb(0x1F5A3C)},
                             Patch{"Ocean", Rgb(0x1B6C8C)}, Patch{"Plum", Rgb(0x5A2A63)}};

constexpr std::array kUpperRow{Group{"PRIMARIES", kPrimaries}, Group{"SECONDARIES", kSecondaries},
                               Group{"SKIN TONES", kSkinTones}};
constexpr std::array kLowerRow{Group{"PASTELS", kPastels}, Group{"NATURE", kNature}};

constexpr double kGap = 0.035;
constexpr double kPatchesInRow = 12;

constexpr TextStyle kCaption{.points = 7, .color = kPaleInk, .weight = 0.11};
constexpr TextStyle kSmall{.points = 6.5, .color = kInk, .align = Align::kCentre};

void DrawRow(Canvas& canvas, const Box& box, std::span<const Group> groups) {
  const double step = (box.Width() + kGap) / kPatchesInRow;
  double left = box.left;
  for (const Group& group : groups) {
    DrawText(canvas, {left, box.top + 0.09}, group.title, kCaption);
    for (const Patch& patch : group.patches) {
      const Box area{left, box.top + 0.15, left + step - kGap, box.bottom - 0.14};
      canvas.Fill(area, patch.color);
      canvas.Frame(area, 0.004, kPaleInk);
      DrawText(canvas, {area.Middle().x, box.bottom - 0.03}, patch.name, kSmall);
      left += step;
    }
  }
}

void DrawSteps(Canvas& canvas, const Box& box) {
  constexpr int kSteps = 16;
  const double step = box.Width() / kSteps;
  for (int i = 0; i < kSteps; ++i) {
    const double level = i / (kSteps - 1.0);
    const double left = box.left + i * step;
    canvas.Fill({left, box.top, left + step, box.bottom}, {level, level, level});
    DrawText(canvas, {left + step / 2, box.bottom + 0.10}, std::to_string(i * 17),
             {.points = 6, .color = kInk, .align = Align::kCentre});
  }
  canvas.Frame(box, 0.004, kPaleInk);
}

// From black to `full` in the left half, from there to white in the right one, or in one go.
void DrawRamp(Canvas& canvas, const Box& box, const Color& full, bool throughColor) {
  canvas.Shade(box, [&](const Point& point) {
    const double t = std::clamp((point.x - box.left) / box.Width(), 0.0, 1.0);
    if (!throughColor) return Mix(kBlack, full, t);
    return t < 0.5 ? Mix(kBlack, full, 2 * t) : Mix(full, kPaper, 2 * t - 1);
  });
  canvas.Frame(box, 0.004, kPaleInk);
}

Color Hue(double turn) {
  const auto channel = [&](double offset) {
    const double place = std::fmod(turn * 6 + offset, 6.0);
    return std::clamp(std::abs(place - 3) - 1, 0.0, 1.0);
  };
  return {channel(0), channel(4), channel(2)};
}

void DrawRainbow(Canvas& canvas, const Box& box) {
  canvas.Shade(box, [&](const Point& point) {
    return Hue(std::clamp((point.x - box.left) / box.Width(), 0.0, 1.0));
  });
}

}  // namespace

void DrawColorChart(Canvas& canvas, const Box& box) {
  const double middle = box.Middle().y;
  DrawRow(canvas, {box.left, box.top, box.right, middle - 0.04}, kUpperRow);
  DrawRow(canvas, {box.left, middle + 0.04, box.right, box.bottom}, kLowerRow);
}

void DrawRamps(Canvas& canvas, const Box& box) {
  DrawSteps(canvas, {box.left, box.top, box.right, box.top + 0.30});
  double y = box.top + 0.45;
  const auto next = [&](double height) {
    const Box strip{box.left, y, box.right, y + height};
    y += height + 0.015;
    return strip;
  };
  DrawRamp(canvas, next(0.20), kPaper, false);
  y += 0.02;
  DrawRamp(canvas, next(0.11), Rgb(0xFF0000), true);
  DrawRamp(canvas, next(0.11), Rgb(0x00FF00), true);
  DrawRamp(canvas, next(0.11), Rgb(0x0000FF), true);
  y += 0.02;
  DrawRainbow(canvas, next(0.11));
}

}  // namespace simulator
