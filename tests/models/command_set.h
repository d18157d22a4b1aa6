#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>

#include "tests/models/record.h"
#include "tests/models/wire.h"

namespace pmddb832::models {

// Words of the host's acquisition records that the module writes; the others are never touched.
using SetupRecord = std::array<std::uint32_t, 6>;
using BandRecord = std::array<std::uint32_t, 5>;
enum SetupWord { kSetupStatus = 0, kSetupLineBytes = 2, kSetupWidth = 4, kSetupHeight = 5 };
enum BandWord { kBandStatus = 0, kBandDone = 2, kBandLines = 3, kBandBytes = 4 };
inline constexpr std::uint32_t kGoOn = 1, kFailed = 2, kFreshBuffer = 3;

// Groups of 8 pixels.
inline std::uint32_t Up8(std::uint32_t pixels) {
  return (pixels + 7) & ~7u;
}
inline std::uint32_t Down8(std::uint32_t pixels) {
  return pixels & ~7u;
}
// Whether an output format of the host has the lines of a band from its top, else from its bottom.
inline bool IsTopDown(std::uint32_t format) {
  return format == 1 || format == 3 || format == 5 || format == 6;
}

// What every call finds: the record that is current, and the wire.
struct Session {
  Record* record;
  Wire& wire;
};

// What both families share. A command is two bytes, ESC or FS and a letter; 06 is the one
// acknowledge there is.
class CommandSet {
 public:
  explicit CommandSet(Session& session) : session_(session) {}
  virtual ~CommandSet() = default;

  virtual bool Open() = 0;
  virtual void Close() = 0;
  virtual void InitAcquire(std::uint32_t format, bool tellsProgress, SetupRecord& setup) = 0;
  virtual void AcquireImage(std::span<std::uint8_t> buffer, BandRecord& band) = 0;
  virtual void AbortScan() = 0;
  virtual std::uint32_t GetOptionStatus(std::uint32_t option) = 0;
  virtual std::uint32_t GetScanPaperSize(std::uint32_t option, std::uint32_t& width,
                                         std::uint32_t& height) = 0;
  virtual bool EnableOption(std::uint32_t value) = 0;

  bool FeedPaper();
  bool EjectPage();
  bool ResetScanner();
  std::uint8_t SetFocus(std::uint32_t mode, std::uint8_t position);
  std::uint32_t LastError() const { return error_; }

 protected:
  virtual std::uint8_t Focus(bool automatic, std::uint8_t position) = 0;

  Record& Settings() const { return *session_.record; }
  Wire& OnWire() const { return session_.wire; }
  bool SendEsc(char letter);
  bool CheckAck();
  bool Cancel();
  // Letter, ACK, parameters, ACK.
  bool SendParameters(char letter, const Bytes& parameters);
  bool SendTable(char selector, std::size_t offsetInRecord);
  bool SendColorMatrix();
  void Repaint();
  // Asks with ESC "q" for the position that automatic focus found; 255 where there is none.
  std::uint8_t AskFocusPosition();

  std::uint8_t GammaCode() const;
  // For ESC "B" and byte 32 of the parameter block.
  std::uint8_t HalftoneCode() const;
  std::uint8_t DropoutCode() const;
  std::uint16_t CountHalftones() const;
  // Stores the 16 characters of a reply, padded with blanks, and returns them.
  std::string StoreProductName(std::span<const std::uint8_t> reply) const;
  // Writes the name of the model that the host expects; false when it expects none that is known.
  bool WriteKnownModel() const;
  // The host's own name for a model that is not known, else the maker's.
  void WriteOtherModel() const;
  void StoreLevelGroup() const;

  bool paperFed_ = false;
  bool scanStarted_ = false;
  std::uint32_t error_ = 0;
  std::array<std::uint8_t, 150> reply_{};

 private:
  Session& session_;
};

}  // namespace pmddb832::models
