#pragma once

#include <cstdint>
#include <vector>

#include "simulator/device/line_format.h"
#include "simulator/device/scan_request.h"
#include "simulator/page/sampling.h"

namespace simulator {

// A scan under way: the lines of the requested area from top to bottom, in the form of the wire.
// The picture must outlive it.
class LineSource {
 public:
  LineSource(const Picture& scanned, const ScanRequest& scanRequest)
      : request_(scanRequest),
        sampler_(scanned, scanRequest.dotsPerInch, scanRequest.left, scanRequest.width) {}

  const ScanRequest& Request() const { return request_; }

  // Line `index` of the area.
  std::vector<std::uint8_t> Line(std::uint32_t index) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(LineBytes(request_));
    AppendLine(request_, sampler_.Line(request_.top + index), bytes);
    return bytes;
  }

 private:
  const ScanRequest request_;
  LineSampler sampler_;
};

}  // namespace simulator
