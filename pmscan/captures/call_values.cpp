#include "pmscan/captures/call_values.h"

#include <algorithm>

#include "capture/file/crc32.h"

namespace pmscan {

std::vector<capture::Value> ValuesOf(const pmddb832::AcquisitionSetup& setup) {
  return {{"status", setup.status},
          {"lineBytes", setup.lineBytes},
          {"widthPixels", setup.widthPixels},
          {"heightLines", setup.heightLines}};
}

std::vector<capture::Value> ValuesOf(const pmddb832::AcquisitionBand& band) {
  return {
      {"status", band.status}, {"done", band.done}, {"lines", band.lines}, {"bytes", band.bytes}};
}

std::vector<capture::Value> WithoutZeros(const std::vector<capture::Value>& values) {
  std::vector<capture::Value> kept;
  std::copy_if(values.begin(), values.end(), std::back_inserter(kept),
               [](const capture::Value& value) { return value.value != 0; });
  return kept;
}

std::uint32_t ValueOf(const std::vector<capture::Value>& values, const std::string& name) {
  for (const capture::Value& value : values) {
    if (value.name == name) return value.value;
  }
  return 0;
}

std::optional<std::uint32_t> LinesChecksum(const std::uint8_t* buffer, std::uint32_t bufferBytes,
                                           const pmddb832::AcquisitionBand& band) {
  if (band.status != pmddb832::kAcquisitionGoOn) return std::nullopt;
  return capture::Crc32({buffer, std::min(bufferBytes, band.bytes)});
}

}  // namespace pmscan
