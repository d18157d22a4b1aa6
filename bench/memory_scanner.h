#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "transport/raw_device.h"

namespace pmddb832::bench {

enum class Family { kExtended, kStandard };

// A scanner that costs nothing but copies: of the protocol it knows no more than which prepared
// reply comes next, and the image is served from a page in memory. Its bed is a letter page
// and somewhat wider, since lines are sent in groups of eight pixels.
class MemoryScanner final : public RawDevice {
 public:
  // Sends `pixelBits` bits for a pixel. The bytes of `page` are served in order, as many as a scan
  // takes; each is below 0x80, so that any of them can stand for a good status byte.
  MemoryScanner(Family family, std::uint32_t pixelBits, std::span<const std::uint8_t> page);

  // Reads and writes since it was made.
  std::uint32_t Transfers() const { return transfers_; }

  std::int32_t RawReadData(void* buffer, std::uint32_t* byteCount, void* overlapped) override;
  std::int32_t RawWriteData(void* buffer, std::uint32_t byteCount, void* overlapped) override;

 private:
  using Bytes = std::vector<std::uint8_t>;

  void Command(std::uint8_t prefix, std::uint8_t letter);
  void TakeParameters(std::span<const std::uint8_t> block);
  Bytes ExtendedReply(std::uint8_t letter);
  Bytes StandardReply(std::uint8_t letter);
  Bytes TransferHeader() const;
  Bytes NextBlockHeader();

  Family family_;
  std::uint32_t pixelBits_;
  std::span<const std::uint8_t> page_;
  std::size_t pageServed_ = 0;
  std::uint32_t transfers_ = 0;

  // The scan that the driver asked for.
  std::uint8_t letter_ = 0;  // of the last command
  std::uint32_t lineBytes_ = 0;
  std::uint32_t lines_ = 0;
  std::uint32_t linesPerBlock_ = 0;
  std::uint32_t linesAnnounced_ = 0;  // in the headers of its blocks

  Bytes reply_;
  std::size_t replyServed_ = 0;
};

}  // namespace pmddb832::bench
