#include "simulator/device/scan_area.h"

namespace simulator {
namespace {

bool IsOutside(std::uint32_t start, std::uint32_t size, std::uint64_t end) {
  return size == 0 || std::uint64_t{start} + size > end;
}

std::string Range(std::uint32_t start, std::uint32_t size, std::uint64_t end) {
  return std::to_string(start) + " + " + std::to_string(size) + " of " + std::to_string(end);
}

}  // namespace

std::string WhyOutside(const ScanArea& area, std::uint64_t columns, std::uint64_t lines) {
  if (IsOutside(area.left, area.width, columns)) {
    return "columns " + Range(area.left, area.width, columns);
  }
  if (IsOutside(area.top, area.height, lines)) {
    return "lines " + Range(area.top, area.height, lines);
  }
  return {};
}

}  // namespace simulator
