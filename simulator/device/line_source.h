#pragma once

#include <cstdint>
#include <vector>

#include "simulator/device/scan_request.h"
#include "simulator/page/sampling.h"

namespace simulator {

// A scan under way: the lines of the requested area from top to bottom, in the form of the wire.
// The picture must outlive it.
class LineSource {
 public:
  LineSource(const Picture& scanned, const ScanRequest& scanRequest);

  const ScanRequest& Request() const { return request_; }

  // Line `index` of the area.
  std::vector<std::uint8_t> Line(std::uint32_t index);

 private:
  void Sharpen(std::uint32_t line);

  const ScanRequest request_;
  const std::uint32_t before_;  // columns that are sampled to the left of the area
  LineSampler sampler_;         // with a column of either side where samples are sharpened
  std::vector<std::uint16_t> sharpened_;
};

}  // namespace simulator
