#include "simulator/page/sunset_sky.h"

#include <array>

#include "simulator/page/value_noise.h"

namespace simulator {
namespace {

struct Stop {
  double y;
  Color color;
};

constexpr std::array kGradient{
    Stop{0.00, Rgb(0x23345F)},     Stop{0.14, Rgb(0x3F4C80)}, Stop{0.27, Rgb(0x7C6493)},
    Stop{0.38, Rgb(0xC27A86)},     Stop{0.47, Rgb(0xEE9A6A)}, Stop{0.55, Rgb(0xFBC377)},
    Stop{kHorizon, Rgb(0xFFDD9C)},
};

double SmoothStep(double from, double to, double value) {
  const double t = std::clamp((value - from) / (to - from), 0.0, 1.0);
  return t * t * (3 - 2 * t);
}

Color Gradient(double y) {
  for (std::size_t i = 1; i < kGradient.size(); ++i) {
    if (y > kGradient[i].y) continue;
    const Stop& above = kGradient[i - 1];
    const Stop& below = kGradient[i];
    return Mix(above.color, below.color, SmoothStep(above.y, below.y, y));
  }
  return kGradient.back().color;
}

Color Add(const Color& color, const Color& light, double amount) {
  return {color.red + light.red * amount, color.green + light.green * amount,
          color.blue + light.blue * amount};
}

// Long banks, thinner towards the horizon; bright below, where the sun reaches them.
Color WithClouds(const Color& sky, const Point& at, double sunDistance) {
  const double depth = 0.10 + (kHorizon - at.y);
  const double along = at.x / depth * 0.85;
  const double across = 2.7 / depth;
  const double bank = Roughness(along + 3.1, across, 5, 11);
  const double cover = SmoothStep(0.50, 0.70, bank) * SmoothStep(0.02, 0.13, kHorizon - at.y);
  if (cover <= 0) return sky;
  const double lit = Roughness(along + 3.1, across + 0.22, 4, 11);
  const double shine = std::clamp(0.55 + (bank - lit) * 2.6, 0.0, 1.0);
  const double warmth = std::exp(-sunDistance * 1.9);
  const Color dark = Mix(Rgb(0x4A4468), Rgb(0xA85A5C), warmth);
  const Color bright = Mix(Rgb(0xC9A0AE), Rgb(0xFFD08A), warmth);
  return Mix(sky, Mix(dark, bright, shine), cover * 0.85);
}

}  // namespace

Color SkyColor(const Point& at) {
  const double distance = Distance({at.x, kSun.y + (at.y - kSun.y) * 1.15}, kSun);
  Color color = Add(Gradient(at.y), Rgb(0xFF8A3C), 0.42 * std::exp(-distance * 4.5));
  color = WithClouds(color, at, distance);
  color = Add(color, Rgb(0xFFE2A0), 0.75 * std::exp(-distance * distance * 110));
  constexpr Color kDisc{1.5, 1.45, 1.2};  // brighter than paper, so that the lake shows it too
  return Mix(kDisc, color, SmoothStep(0.047, 0.052, distance));
}

}  // namespace simulator
