#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "capture/decode/decode_commands.h"
#include "capture/decode/decode_fields.h"

namespace capture {

// What the parameters say of the scan that is started next. 0 stands for what was not sent yet.
struct ScanPlan {
  std::uint32_t linesPerBlock = 0;
  std::uint32_t height = 0;      // lines
  bool linesAtOnce = false;      // ESC d was sent: blocks of several lines
  bool startIsRepeated = false;  // ESC G was refused once

  // The command was sent with that parameter block.
  void Note(const CommandRow& command, std::span<const std::uint8_t> sent);
};

// The blocks of a picture under way: which part of which one is next, and what it holds.
class BlockSequence {
 public:
  enum class Next { kNothing, kHeader, kBlock, kAnswer };

  virtual ~BlockSequence() = default;
  BlockSequence(const BlockSequence&) = delete;
  BlockSequence& operator=(const BlockSequence&) = delete;

  Next Expected() const { return next; }
  std::uint32_t Number() const { return block; }  // of the block that is next or was last, from 1
  std::string Title() const;                      // "block 3 of 12"

  // The next header came, whole. Rows tell what is wrong with it; none where a block follows.
  virtual std::vector<FieldRow> TakeHeader(std::span<const std::uint8_t> header) = 0;
  // The next block came: its length, and the last of its bytes. Tells of "16 lines", "65280
  // bytes", "status ok".
  virtual std::vector<FieldRow> TakeBlock(std::uint64_t bytes, std::uint8_t lastByte) = 0;
  // The host answered the block.
  void TakeAnswer();

 protected:
  explicit BlockSequence(const ScanPlan& scanPlan) : plan(scanPlan) {}
  virtual std::uint32_t Count() const = 0;  // 0: not known
  virtual Next BehindAnswer() const = 0;

  const ScanPlan plan;
  Next next = Next::kNothing;
  std::uint32_t block = 1;
};

// Of the scan that FS G started: `header` is the reply to it.
std::unique_ptr<BlockSequence> MakeExtendedBlocks(const ScanPlan& plan,
                                                  std::span<const std::uint8_t> header);

// Of the scan that ESC G started: `header` is the reply to it, empty where a repeated start is
// answered with the first line.
std::unique_ptr<BlockSequence> MakeStandardBlocks(const ScanPlan& plan,
                                                  std::span<const std::uint8_t> header);

}  // namespace capture
