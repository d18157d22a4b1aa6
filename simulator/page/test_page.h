#pragma once

#include <cstdint>

#include "simulator/page/picture.h"

namespace simulator {

// The built-in page, letter size (8.5 x 11 inches): text, colour chart, grey ramps, resolution
// targets, a scene, rulers and corner marks. The same drawing at every resolution; `dotsPerInch`
// is at least 1.
Picture RenderTestPage(std::uint32_t dotsPerInch);

}  // namespace simulator
