#pragma once

#include "simulator/page/canvas.h"

namespace simulator {

// The scene's own coordinates: x from 0 to kSceneAspect, y from 0 to 1 downwards.
inline constexpr double kSceneAspect = 1.5;
inline constexpr double kHorizon = 0.60;
inline constexpr Point kSun{0.93, 0.505};

// The sky with clouds and sun, without mountains.
Color SkyColor(const Point& at);

}  // namespace simulator
