#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "transport/acquisition_records.h"
#include "transport/local_type.h"
#include "wire/wire_block.h"

namespace pmddb832 {

// Halftone code of a row of the halftone table, 0 to 9; row 0 stands for every other index.
std::uint8_t HalftoneCode(std::int32_t row);

// In front of a table that is sent without a prefix byte.
inline constexpr std::uint8_t kNoPrefix = 0xFF;
inline constexpr std::size_t kLongestTable = 256;

// What all command sets have in common: the transport, the interface that the exports drive, the
// state of the page in the feeder and the commands that every scanner knows. There is no virtual
// destructor: an owner destroys an object as its concrete class.
//
// Results are 1 for success and 0 for failure unless stated.
class GeneralCmd {
 public:
  // The interface, in the order of its slots. Arguments and results are those of the exports
  // (interface/exports.h).
  virtual std::uint32_t EnableOption(std::uint32_t value) = 0;
  virtual void Close() = 0;
  virtual std::uint32_t Open() = 0;
  virtual std::uint32_t GetLastError() = 0;
  virtual std::uint32_t AbortScan() = 0;
  virtual void InitAcquire(std::uint32_t outputFormat, ProgressCallback progress,
                           AcquisitionSetup* setup) = 0;
  virtual void AcquireImage(std::uint8_t* buffer, std::uint32_t bufferBytes,
                            AcquisitionBand* band) = 0;
  // `mainStatus` may be null.
  virtual std::uint32_t GetOptionStatus(std::uint8_t* mainStatus, std::uint32_t option) = 0;
  virtual std::uint8_t SetFocusPos(std::uint32_t mode, std::uint8_t position) = 0;
  virtual std::uint32_t GetScanPaperSize(std::uint32_t option, std::uint32_t* width,
                                         std::uint32_t* height) = 0;
  // Allocates what the set needs before it is opened.
  virtual std::uint32_t InitWorkArea();

  // False when the transport could not be allocated: destroy the object and do not use it.
  bool HasTransport() const { return transport_ != nullptr; }

  // Sends ESC and the letter. "G", which starts a scan, also moves the state of the page.
  std::uint32_t SendEscCode(std::uint8_t letter);
  std::uint32_t SendAck(std::uint8_t code);
  std::uint32_t CheckAck();

  // A feed is sent when nothing is fed yet or after a scan; an eject only after a scan that no feed
  // followed. Otherwise they return 0 and send nothing.
  std::uint32_t FeedPaper();
  std::uint32_t EjectPage();

  // Forgets the state of the page and resets the scanner: 1 when it acknowledged.
  std::uint32_t ResetScanner();

  // Gamma code of `gamma`, which is gamma times 100. Sends nothing.
  std::uint8_t SetGamma(std::uint16_t gamma);

  // Leading rows of the halftone table that a scanner of the settings' level digit supports, 0 to
  // 10. Sends nothing.
  std::uint16_t GetHalfTones();

 protected:
  explicit GeneralCmd(std::uint8_t option);
  ~GeneralCmd();
  GeneralCmd(const GeneralCmd&) = delete;
  GeneralCmd& operator=(const GeneralCmd&) = delete;

  LocalType& Wire() { return *transport_; }

  // Sends ESC and the letter, and behind its acknowledge the parameter block, which must be
  // acknowledged too.
  std::uint32_t SendEscBlock(std::uint8_t letter, std::span<const std::uint8_t> block);

  // The same for a table behind a prefix byte; kNoPrefix stands for none. Tables have at most
  // kLongestTable bytes.
  std::uint32_t SendEscTable(std::uint8_t letter, std::uint8_t prefix,
                             std::span<const std::uint8_t> table);

  // Asks for the focus position that automatic focus found: 0xFF when the scanner does not tell.
  std::uint8_t ReadFocusPosition();

  // A scan was started: the page, if any, is not a freshly fed one any more.
  void NoteScanStarted();

  ReplyBuffer replyBuffer_{};

 private:
  std::unique_ptr<LocalType> transport_;
  [[maybe_unused]] std::uint8_t option_;  // the creator's probe option, kept with the object
  std::uint8_t paperFed_ = 0;             // a page was fed and not scanned yet
  std::uint8_t scanStarted_ = 0;          // a scan was started since the last feed, eject or reset
};

}  // namespace pmddb832
