#pragma once

#include <cstdint>
#include <span>

#include "capture/conversation/conversation.h"
#include "interface/scanner_settings.h"
#include "transport/raw_device.h"

namespace pmscan {

// Stands before a scanner that tells no size of its bed or of its option unit: the module cuts
// every area down to nothing then. Where the scanner tells none, the module is shown one that is
// larger than all scanners, so that the scanner itself judges the area. From one with extended
// commands of level B3 the module takes no size at all, so that its identity says level B4 behind
// this. All else passes as it is.
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
  using Bytes = std::span<std::uint8_t>;

  void ChangeReply(Bytes bytes);
  void ChangeIdentityBlock(Bytes bytes);
  void ChangeLevelData(Bytes data);
  void ChangeStatusData(Bytes data) const;

  pmddb832::StillImageDevice& device_;
  const bool isOn_;
  capture::Conversation conversation_;
  std::uint32_t lastResolution_ = 0;  // that a scanner with standard commands told
  bool hasRaisedLevel_ = false;
};

}  // namespace pmscan
