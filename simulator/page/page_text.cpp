#include <array>
#include <string_view>

#include "simulator/page/page_parts.h"
#include "simulator/page/stroke_font.h"

// The words of the test page.

namespace simulator {
namespace {

struct Sample {
  double points;
  std::string_view text;
};

constexpr std::array kSamples{
    Sample{30, "Hamburgefonts"},
    Sample{20, "The quick brown fox"},
    Sample{14, "jumps over the lazy dog, 0123."},
    Sample{11, "Pack my box with five dozen liquor jugs."},
    Sample{9, "ABCDEFGHIJKLMNOPQRSTUVWXYZ 0123456789"},
    Sample{8, "Sphinx of black quartz, judge my vow! (a + b) = c?"},
    Sample{7, "Waltz, bad nymph, for quick jigs vex; $4.50 & 10% more."},
    Sample{6, "How vexingly quick daft zebras jump / The five boxing wizards."},
    Sample{5, "Jackdaws love my big sphinx of quartz. Crazy Fredrick bought many jewels."},
    Sample{4, "We promptly judged antique ivory buckles for the next prize; 3.1415926535 8979."},
};

struct Negative {
  Color ground;
  Color letters;
  std::string_view text;
};

constexpr std::array kNegatives{
    Negative{Rgb(0x111113), kPaper, "White on black"},
    Negative{Rgb(0xB81D2C), Rgb(0xFFF1A8), "Yellow on red"},
    Negative{Rgb(0x1C3F8F), Rgb(0xBFE3FF), "Sky on blue"},
};

void DrawNegatives(Canvas& canvas, const Box& box) {
  const double step = (box.Width() + 0.06) / kNegatives.size();
  double left = box.left;
  for (const Negative& negative : kNegatives) {
    const Box ground{left, box.top, left + step - 0.06, box.bottom};
    canvas.Fill(ground, negative.ground);
    DrawText(canvas, {ground.Middle().x, ground.Middle().y + 0.045}, negative.text,
             {.points = 9, .color = negative.letters, .weight = 0.10, .align = Align::kCentre});
    left += step;
  }
}

}  // namespace

void DrawTitle(Canvas& canvas, const Box& box) {
  const double middle = box.Middle().x;
  DrawText(canvas, {middle, box.top + 0.46}, "Scanner Test Page",
           {.points = 40, .color = kInk, .weight = 0.115, .align = Align::kCentre});
  canvas.Fill({box.left + 0.35, box.top + 0.635, box.right - 0.35, box.top + 0.65}, Rgb(0xC8202F));
  DrawText(canvas, {middle, box.top + 0.83},
           "US letter, 8.5 x 11 inches. The corner signs show orientation and mirroring,",
           {.points = 8.5, .color = kPaleInk, .align = Align::kCentre});
  DrawText(canvas, {middle, box.top + 0.98}, "the rulers begin at the edges of the paper.",
           {.points = 8.5, .color = kPaleInk, .align = Align::kCentre});
}

void DrawTextSamples(Canvas& canvas, const Box& box) {
  double y = box.top;
  for (const Sample& sample : kSamples) {
    y += sample.points / 72 * 0.74;
    DrawText(canvas, {box.left, y}, sample.text, {.points = sample.points, .color = kInk});
    y += sample.points / 72 * 0.32 + 0.072;
  }
  DrawNegatives(canvas, {box.left, box.bottom - 0.28, box.right, box.bottom});
}

}  // namespace simulator
