#include "pmscan/captures/call_values.h"

#include "capture/file/crc32.h"

namespace pmscan {

std::uint32_t ValueOf(const std::vector<capture::Value>& values, std::string_view name) {
  for (const capture::Value& value : values) {
    if (value.name == name) return value.value;
  }
  return 0;
}

std::optional<std::uint32_t> LinesChecksum(std::uint8_t* buffer, std::uint32_t bufferBytes,
                                           pmddb832::AcquisitionBand* band) {
  if (band->status != pmddb832::kAcquisitionGoOn) return std::nullopt;
  return capture::Crc32({buffer, std::min(bufferBytes, band->bytes)});
}

}  // namespace pmscan
