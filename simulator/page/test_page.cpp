#include "simulator/page/test_page.h"

#include "simulator/page/page_parts.h"
#include "simulator/page/stroke_font.h"
#include "simulator/page/sunset_scene.h"

namespace simulator {
namespace {

constexpr Box kTitle{1.55, 0.52, 6.95, 1.45};
constexpr Box kScene{0.55, 1.62, 4.39, 4.18};
constexpr Box kText{4.62, 1.62, 7.95, 4.36};
constexpr Box kColors{0.55, 4.52, 7.95, 6.40};
constexpr Box kRamps{0.55, 6.56, 7.95, 7.72};
constexpr Box kLineGroups{0.55, 7.90, 5.02, 9.36};
constexpr Box kRoundTargets{5.16, 7.90, 7.95, 9.36};
constexpr Box kFinePatterns{1.55, 9.56, 6.95, 10.46};

void DrawPhotograph(Canvas& canvas) {
  DrawSunsetScene(canvas, kScene);
  canvas.Frame(kScene, 0.006, kInk);
  DrawText(canvas, {kScene.left, kScene.bottom + 0.14},
           "Evening at the lake: smooth gradients, soft haze and fine branches.",
           {.points = 7, .color = kPaleInk});
}

}  // namespace

Picture RenderTestPage(std::uint32_t dotsPerInch) {
  Canvas canvas(kPageWidth, kPageHeight, dotsPerInch);
  DrawRulers(canvas);
  DrawCornerMarks(canvas);
  DrawTitle(canvas, kTitle);
  DrawPhotograph(canvas);
  DrawTextSamples(canvas, kText);
  DrawColorChart(canvas, kColors);
  DrawRamps(canvas, kRamps);
  DrawLineGroups(canvas, kLineGroups);
  DrawRoundTargets(canvas, kRoundTargets);
  DrawFinePatterns(canvas, kFinePatterns);
  return std::move(canvas).Take();
}

}  // namespace simulator
