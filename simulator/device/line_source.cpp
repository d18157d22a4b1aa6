#include "simulator/device/line_source.h"

#include <span>

#include "simulator/device/line_format.h"

namespace simulator {
namespace {

std::uint32_t ColumnsBefore(const ScanRequest& request) {
  return request.sharpness != 0 && request.left > 0 ? 1 : 0;
}

std::uint32_t ColumnsBehind(const ScanRequest& request) {
  return request.sharpness != 0 ? 1 : 0;
}

}  // namespace

LineSource::LineSource(const Picture& scanned, const ScanRequest& scanRequest)
    : request_(scanRequest),
      before_(ColumnsBefore(scanRequest)),
      sampler_(scanned, scanRequest.dotsPerInch, scanRequest.left - before_,
               before_ + scanRequest.width + ColumnsBehind(scanRequest)) {}

std::vector<std::uint8_t> LineSource::Line(std::uint32_t index) {
  std::vector<std::uint8_t> bytes;
  bytes.reserve(LineBytes(request_));
  const std::uint32_t line = request_.top + index;
  if (request_.sharpness == 0) {
    AppendLine(request_, sampler_.Line(line), bytes, index);
    return bytes;
  }
  Sharpen(line);
  AppendLine(request_, sharpened_, bytes, index);
  return bytes;
}

// At the left and upper edge of what is scanned a sample stands for its missing neighbour.
void LineSource::Sharpen(std::uint32_t line) {
  const std::vector<std::uint16_t> above = sampler_.Line(line > 0 ? line - 1 : 0);
  const std::vector<std::uint16_t> below = sampler_.Line(line + 1);
  const std::vector<std::uint16_t>& here = sampler_.Line(line);
  sharpened_.resize(std::size_t{request_.width} * 3);
  for (std::size_t i = 0; i < sharpened_.size(); ++i) {
    const std::size_t place = i + std::size_t{before_} * 3;
    const std::uint32_t left = here[place >= 3 ? place - 3 : place];
    const std::uint32_t sum = left + here[place + 3] + above[place] + below[place];
    sharpened_[i] = Sharpened(request_.sharpness, here[place], sum);
  }
}

}  // namespace simulator
