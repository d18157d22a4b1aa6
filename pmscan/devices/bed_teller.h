#pragma once

#include <cstdint>
#include <vector>

#include "interface/scanner_settings.h"
#include "transport/raw_device.h"

namespace pmscan {

// Stands before a scanner, and makes the module take the size of the bed from one with extended
// commands of level B3, which it takes from higher levels only: without a size it cuts every area
// down to nothing. The identity that such a scanner answers with says level B4 behind this; where
// it tells no bed, there is one as large as can be, and the scanner itself judges the area. All
// else passes as it is.
class BedTeller final : public pmddb832::RawDevice {
 public:
  // `passedDevice` outlives this. One that is not on passes everything as it is.
  BedTeller(pmddb832::StillImageDevice& passedDevice, bool isOn)
      : device_(passedDevice), isOn_(isOn) {}

  // Puts the level that the scanner really has into the record of an open scanner, with what
  // follows from it for the host.
  void CorrectLevel(pmddb832::ScannerSettings& settings) const;

  std::int32_t RawReadData(void* buffer, std::uint32_t* byteCount, void* overlapped) override;
  std::int32_t RawWriteData(void* buffer, std::uint32_t byteCount, void* overlapped) override;

 private:
  void Change(std::uint8_t* bytes, std::uint32_t count);

  pmddb832::StillImageDevice& device_;
  const bool isOn_;
  bool isIdentityDue_ = false;
  bool hasChanged_ = false;
};

}  // namespace pmscan
