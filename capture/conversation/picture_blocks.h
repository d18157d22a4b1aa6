#pragma once

#include <cstdint>
#include <span>

#include "wire/command_table.h"
#include "wire/named_field.h"

namespace capture {

// What the parameters say of the scan that is started next. 0 stands for what was not sent yet.
struct AnnouncedScan {
  std::uint32_t linesPerBlock = 0;
  std::uint32_t height = 0;      // lines
  bool linesAtOnce = false;      // ESC d was sent: blocks of several lines
  bool startIsRepeated = false;  // ESC G was refused once

  // The command was sent with that parameter block.
  void Note(const pmddb832::CommandShape& command, std::span<const std::uint8_t> sent);
};

// One block of a picture.
struct PictureBlock {
  std::uint32_t number = 1;  // from 1
  std::uint32_t count = 0;   // of the picture's blocks; 0: not known
  std::uint32_t lines = 0;   // 0: not known
  std::uint64_t bytes = 0;   // that came, without the status behind them
  std::uint64_t announcedBytes = 0;
  std::uint8_t status = 0;
  std::span<const pmddb832::ValueName> statusNames = {};
};

// The blocks of a picture under way: which part of which one is next, and what it holds.
class PictureBlocks {
 public:
  // What is to come.
  enum class Step : std::uint8_t { kNone, kHeader, kBlock, kAnswer };
  using Bytes = std::span<const std::uint8_t>;

  // Of the scan that FS G started: `header` is the reply to it.
  static PictureBlocks Extended(const AnnouncedScan& scan, Bytes header);
  // Of the scan that ESC G started: `header` is the reply to it, empty where a repeated start is
  // answered with the first line.
  static PictureBlocks Standard(const AnnouncedScan& scan, Bytes header);

  Step Next() const { return next_; }
  // The bytes of the header or the block that is to come, with its status; 0 for an answer.
  std::uint64_t NextBytes() const;
  // The block that is next or was last.
  const PictureBlock& Block() const { return block_; }

  // The next header came, whole. A block follows when it begins with STX and announces lines.
  void TakeHeader(Bytes header);
  // The next block came: its length, and the last of its bytes.
  void TakeBlock(std::uint64_t bytes, std::uint8_t lastByte);
  // The host answered the block, and asks for the next one.
  void TakeAnswer();
  // No more will come.
  void End() { next_ = Step::kNone; }

 private:
  PictureBlocks(const AnnouncedScan& scan, bool isExtended)
      : scan_(scan), isExtended_(isExtended) {}
  void Announce();

  AnnouncedScan scan_;
  bool isExtended_;
  // Of the transfer header, extended blocks only.
  std::uint32_t fullBlockBytes_ = 0;
  std::uint32_t fullBlocks_ = 0;
  std::uint32_t lastBlockBytes_ = 0;
  PictureBlock block_;
  Step next_ = Step::kNone;
};

}  // namespace capture
