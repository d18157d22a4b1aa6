#include "simulator/page/sunset_scene.h"

#include <array>

#include "simulator/page/stroke_font.h"
#include "simulator/page/sunset_sky.h"
#include "simulator/page/value_noise.h"

namespace simulator {
namespace {

// A range of mountains: the height of its ridge over the horizon, and its colours at the ridge and
// in the haze at its foot.
struct Range {
  double height;
  double roughness;
  double bumps;
  std::uint32_t seed;
  Color ridge;
  Color foot;
};

constexpr std::array kRanges{
    Range{0.235, 0.26, 2.6, 40, Rgb(0x9A7A96), Rgb(0xE9B595)},
    Range{0.165, 0.24, 3.4, 57, Rgb(0x71607F), Rgb(0xC08F88)},
    Range{0.105, 0.17, 4.6, 72, Rgb(0x46456A), Rgb(0x8B6A77)},
    Range{0.050, 0.09, 7.0, 90, Rgb(0x262B46), Rgb(0x4A4258)},
};

// The ranges leave a valley where the sun sets.
double Ridge(const Range& range, double x) {
  const double noise = Roughness(x * range.bumps, 0.5, 7, range.seed);
  const double peaks = 1 - std::abs(2 * noise - 1);
  const double off = (x - kSun.x) / 0.27;
  const double valley = 1 - 0.72 * std::exp(-off * off);
  return kHorizon - valley * (range.height + (peaks - 0.72) * range.roughness);
}

// Light and shade of the slopes.
double Relief(const Range& range, const Point& at) {
  const double scale = range.bumps * 7;
  const double here = Roughness(at.x * scale + at.y * scale, at.y * scale * 1.4, 4, range.seed + 5);
  return (here - 0.5) * 0.5;
}

// Sky and mountains: all that the lake mirrors. `pixel` is the size of a pixel, for soft edges.
class Backdrop {
 public:
  explicit Backdrop(double pixel) : pixelSize_(pixel) {
    for (std::size_t i = 0; i < kRanges.size(); ++i) {
      for (std::size_t k = 0; k < kColumns; ++k) {
        ridges_[i][k] = Ridge(kRanges[i], static_cast<double>(k) * kSceneAspect / (kColumns - 1));
      }
    }
  }

  Color At(const Point& at) const {
    std::size_t nearest = kRanges.size();  // the first range, seen from the shore, that hides all
    while (nearest > 0 && Cover(nearest - 1, at) < 1) --nearest;
    Color color = nearest > 0 ? SlopeColor(nearest - 1, at) : SkyColor(at);
    for (std::size_t i = nearest; i < kRanges.size(); ++i) {
      const double cover = Cover(i, at);
      if (cover > 0) color = Mix(color, SlopeColor(i, at), cover);
    }
    return color;
  }

 private:
  static constexpr std::size_t kColumns = 4096;

  double RidgeAt(std::size_t range, double x) const {
    const double place = std::clamp(x / kSceneAspect, 0.0, 0.9999) * (kColumns - 1);
    const auto column = static_cast<std::size_t>(place);
    const double share = place - static_cast<double>(column);
    return ridges_[range][column] * (1 - share) + ridges_[range][column + 1] * share;
  }

  double Cover(std::size_t range, const Point& at) const {
    return std::clamp((at.y - RidgeAt(range, at.x)) / pixelSize_ + 0.5, 0.0, 1.0);
  }

  Color SlopeColor(std::size_t index, const Point& at) const {
    const Range& range = kRanges[index];
    const double depth = at.y - RidgeAt(index, at.x);
    const double haze = std::clamp(depth / (range.height + 0.05), 0.0, 1.0);
    const Color color = Mix(range.ridge, range.foot, haze * haze);
    const double glow = 0.35 * std::exp(-Distance(at, kSun) * 5);
    const Color lit = Mix(color, Rgb(0xFFB070), glow);
    const double relief = Relief(range, at) * (1 - haze);
    return relief > 0 ? Mix(lit, Rgb(0xFFD9B0), relief) : Mix(lit, Rgb(0x20203A), -relief);
  }

  double pixelSize_;
  std::array<std::array<double, kColumns>, kRanges.size()> ridges_{};
};

// The lake mirrors the backdrop, the more broken the nearer.
Color LakeColor(const Backdrop& backdrop, const Point& at) {
  const double down = at.y - kHorizon;
  const double near = down / (1 - kHorizon);
  const double depth = 0.045 + down;
  const double waves = Roughness(at.x / depth * 1.1, 4.2 / depth, 4, 200) - 0.5;
  const double fine = Noise(at.x / depth * 4.5, 19 / depth, 230) - 0.5;
  const double bend = waves * (0.02 + 0.06 * near) + fine * (0.008 + 0.012 * near);
  const Point mirrored{at.x + bend * 0.4, std::max(kHorizon - down * 0.95 - bend, 0.0)};
  const Color color = Mix(backdrop.At(mirrored), Rgb(0x1B2A4C), 0.14 + 0.36 * near);
  const double off = (at.x - kSun.x) / (0.03 + 0.13 * near);
  const double sparkle = std::clamp((waves * 0.8 + fine * 1.3 + 0.10) * 3.6, 0.0, 1.0);
  return Mix(color, Rgb(0xFFDE9A), std::exp(-off * off) * sparkle * (0.95 - 0.35 * near));
}

// A spruce by its foot and size; its outline is a saw of branches.
struct Spruce {
  double x;
  double foot;
  double height;
};

constexpr std::array kSpruces{
    Spruce{0.050, 1.00, 0.62}, Spruce{0.155, 1.01, 0.47}, Spruce{0.245, 1.02, 0.34},
    Spruce{0.105, 1.02, 0.40}, Spruce{0.315, 1.02, 0.22}, Spruce{1.455, 1.00, 0.55},
    Spruce{1.375, 1.01, 0.36}, Spruce{1.300, 1.02, 0.23}, Spruce{1.235, 1.02, 0.15},
};

// How far the point lies inside the tree; negative, if only roughly so, outside.
double DepthInSpruce(const Spruce& tree, const Point& at) {
  const double t = (at.y - (tree.foot - tree.height)) / tree.height;
  const double off = at.x - tree.x;
  const double widest = tree.height * 0.21 * 1.3 * t;
  if (widest < std::abs(off)) return -1;
  const double side = off < 0 ? 0.0 : 0.37;  // the branches of both sides do not meet
  const double droop = std::abs(off) / tree.height * 0.9;
  const double tier = (t - droop) * (22 - 6 * t) + side + tree.x * 7;
  const double saw = tier - std::floor(tier);
  const double length = 0.7 + 0.6 * Noise(std::floor(tier) * 1.7, tree.x * 90 + side, 300);
  const double half = tree.height * 0.21 * t * length * (0.35 + 0.65 * saw);
  return half - std::abs(off);
}

double DepthInShore(const Point& at) {
  if (at.y < 0.85) return -0.01;
  const double middle = 0.75 - at.x;
  const double bank = 0.985 - 0.16 * middle * middle;
  return at.y - bank + 0.03 * (Roughness(at.x * 22, 0.5, 5, 320) - 0.5);
}

Color WithForeground(Color color, const Point& at, double pixel) {
  double depth = DepthInShore(at);
  for (const Spruce& tree : kSpruces) depth = std::max(depth, DepthInSpruce(tree, at));
  const double cover = std::clamp(depth / pixel + 0.5, 0.0, 1.0);
  if (cover == 0) return color;
  const double needles = Roughness(at.x * 60, at.y * 60, 3, 340);
  const Color dark = Mix(Rgb(0x080D14), Rgb(0x1E2A2C), needles * needles);
  const double rim = std::clamp(1 - depth / 0.004, 0.0, 1.0);
  return Mix(color, Mix(dark, Rgb(0x7A4C3A), rim * 0.35), cover);
}

void DrawGulls(Canvas& canvas, const Box& box) {
  struct Gull {
    double x, y, span;
  };
  const double scale = box.Height();
  for (const Gull& gull : {Gull{0.50, 0.20, 0.050}, Gull{0.585, 0.165, 0.036},
                           Gull{0.60, 0.235, 0.030}, Gull{0.43, 0.265, 0.026}}) {
    Polyline wings;
    for (int i = -8; i <= 8; ++i) {
      const double t = i / 8.0;
      const double lift = std::abs(t) * (1.25 - std::abs(t)) * 0.62;
      wings.push_back({box.left + (gull.x + t * gull.span / 2) * scale,
                       box.top + (gull.y - lift * gull.span) * scale});
    }
    canvas.Stroke(std::span(&wings, 1), gull.span * 0.075 * scale, Rgb(0x2B2A40));
  }
}

}  // namespace

void DrawSunsetScene(Canvas& canvas, const Box& box) {
  const double scale = box.Height();
  const double pixel = canvas.PixelSize() / scale;
  const Backdrop backdrop(pixel);
  canvas.Shade(box, [&](const Point& point) {
    const Point at{(point.x - box.left) / box.Width() * kSceneAspect, (point.y - box.top) / scale};
    const Color far = at.y < kHorizon ? backdrop.At(at) : LakeColor(backdrop, at);
    return WithForeground(far, at, pixel);
  });
  DrawGulls(canvas, box);
}

}  // namespace simulator
