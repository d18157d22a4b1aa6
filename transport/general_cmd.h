#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "transport/acquisition_records.h"
#include "transport/feeder_page.h"
#include "transport/local_type.h"
#include "wire/error_codes.h"

namespace pmddb832 {

// What all command sets have in common: the transport, the interface that the exports drive, the
// page in the feeder, the last error and the commands that every scanner knows. There is no virtual
// destructor: an owner destroys an object as its concrete class.
//
// Results are 1 for success and 0 for failure unless stated.
class GeneralCmd {
 public:
  // The interface, in the order of its slots. Arguments and results are those of the exports
  // (interface/exports.h).
  virtual std::uint32_t EnableOption(Call& call, std::uint32_t value) = 0;
  virtual void Close(Call& call) = 0;
  virtual std::uint32_t Open(Call& call) = 0;
  virtual std::uint32_t GetLastError() = 0;
  virtual std::uint32_t AbortScan(Call& call) = 0;
  virtual void InitAcquire(Call& call, std::uint32_t outputFormat, ProgressCallback progress,
                           AcquisitionSetup* setup) = 0;
  virtual void AcquireImage(Call& call, std::uint8_t* buffer, std::uint32_t bufferBytes,
                            AcquisitionBand* band) = 0;
  // `mainStatus` may be null.
  virtual std::uint32_t GetOptionStatus(Call& call, std::uint8_t* mainStatus,
                                        std::uint32_t option) = 0;
  virtual std::uint8_t SetFocusPos(Call& call, std::uint32_t mode, std::uint8_t position) = 0;
  virtual std::uint32_t GetScanPaperSize(Call& call, std::uint32_t option, std::uint32_t* width,
                                         std::uint32_t* height) = 0;
  // Allocates what the set needs before it is opened.
  virtual std::uint32_t InitWorkArea();

  // Null when the transport could not be allocated: destroy the object and do not use it.
  LocalType* Wire() { return transport_.get(); }

  // Sends ESC and the letter. esc::kStart also moves the page in the feeder.
  std::uint32_t SendEscCode(Call& call, std::uint8_t letter);
  std::uint32_t SendAck(Call& call, std::uint8_t code);
  std::uint32_t CheckAck(Call& call);

  // A feed is sent when nothing is fed yet or after a scan; an eject only after a scan that no feed
  // followed. Otherwise they return 0 and send nothing.
  std::uint32_t FeedPaper(Call& call);
  std::uint32_t EjectPage(Call& call);

  // Forgets the page in the feeder and resets the scanner: 1 when it acknowledged.
  std::uint32_t ResetScanner(Call& call);

  // Gamma code of `gamma`, which is gamma times 100. Sends nothing.
  std::uint8_t SetGamma(std::uint16_t gamma);

  // Leading rows of the halftone table that a scanner of the settings' level digit supports, 0 to
  // 10. Sends nothing.
  std::uint16_t GetHalfTones(const ScannerSettings& settings);

  // A scan was started: the page, if any, is not a freshly fed one any more.
  void NoteScanStarted() { page_ = FeederPage::kScanned; }

  // Keeps the code for GetLastError. Always false.
  bool Fail(ErrorCode code);
  ErrorCode& LastError() { return lastError_; }

 protected:
  explicit GeneralCmd(std::uint8_t option);
  ~GeneralCmd();

 private:
  std::unique_ptr<LocalType> transport_;
  [[maybe_unused]] std::uint8_t option_;  // the creator's probe option, kept with the object
  FeederPage page_ = FeederPage::kNone;
  ErrorCode lastError_ = kNoError;
};

// In front of a table that is sent without a prefix byte.
inline constexpr std::uint8_t kNoPrefix = 0xFF;
inline constexpr std::size_t kLongestTable = 256;

// Sends ESC and the letter, and behind its acknowledge the parameter block, which must be
// acknowledged too.
std::uint32_t SendEscBlock(GeneralCmd& scanner, Call& call, std::uint8_t letter,
                           std::span<const std::uint8_t> block);

// The same for a table behind a prefix byte; kNoPrefix stands for none. Tables have at most
// kLongestTable bytes.
std::uint32_t SendEscTable(GeneralCmd& scanner, Call& call, std::uint8_t letter,
                           std::uint8_t prefix, std::span<const std::uint8_t> table);

}  // namespace pmddb832
