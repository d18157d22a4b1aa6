#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "capture/conversation/picture_blocks.h"
#include "wire/command_table.h"

namespace capture {

// What the bytes of a transfer are.
enum class Part : std::uint8_t {
  kCommand,      // the letters of a command that scanners know
  kUnknown,      // letters behind the prefix of a family that no scanner knows
  kParameters,   // of the command, or a piece of them
  kControl,      // EM or FF, which stand alone
  kBlockAnswer,  // ACK or CAN, to a block
  kAcknowledge,  // to a command's letters, to its parameters, to a control byte or CAN
  kReply,        // to a command; where its header declares data, the header or the data
  kBlockHeader,  // of the standard set: in front of a block
  kBlock,        // of the picture
  kStray,        // nothing asked for it
};

// What a read brought.
struct Delivery {
  std::span<const std::uint8_t> bytes;  // empty where none came, or image data were not kept
  std::size_t count = 0;
  std::uint8_t lastByte = 0;
  bool hasFailed = false;
};

// Follows what host and scanner say to each other, in either command set, write by write and read
// by read: the one place that knows which bytes are a command and which its parameters, what
// answers it, and what is a block. A host writes a command's prefix and letter at once.
class Conversation {
 public:
  using Bytes = std::span<const std::uint8_t>;

  // What the bytes are that the host sends.
  Part Write(Bytes bytes);
  // What the bytes are that the host got. Behind a read that failed or brought nothing, nothing
  // more is expected.
  Part Read(Bytes bytes, bool hasFailed);
  Part Read(const Delivery& delivery);
  // The last write did not get through: nothing more is expected of it.
  void Break() { expected_ = Expected::kNothing; }

  // Of the command that was sent last; null before the first.
  const pmddb832::CommandShape* Command() const { return command_; }
  // Its parameters or its reply, header first, as far as they came, and whether that is all.
  const std::vector<std::uint8_t>& Message() const { return message_; }
  bool IsWhole() const { return isWhole_; }

  // The bytes that the next read brings, as far as the protocol tells; 0 where nothing asked for
  // it.
  std::uint64_t NextReadBytes() const;
  // The parameters that the scanner waits for; 0 for none.
  std::size_t NextParameterBytes() const;

  // Whether the next read belongs to a picture, and the picture that was begun last; empty when
  // none was since the last command.
  bool AwaitsPicture() const;
  const std::optional<PictureBlocks>& Picture() const { return picture_; }

 private:
  enum class Expected : std::uint8_t {
    kNothing,
    kLetterAcknowledge,
    kParameters,
    kAcknowledge,
    kReply,
    kReplyData,
  };

  void Begin(const pmddb832::CommandShape& command);
  bool AreParameters(Bytes bytes) const;
  void TakeParameters(Bytes bytes);
  bool TakeBlockAnswer(std::uint8_t byte);
  Part TakePicture(const Delivery& delivery);
  void TakeAcknowledge(std::uint8_t byte);
  void TakeReply(Bytes bytes);
  void BeginPicture();

  Expected expected_ = Expected::kNothing;
  const pmddb832::CommandShape* command_ = nullptr;
  std::vector<std::uint8_t> message_;
  bool isWhole_ = true;
  AnnouncedScan scan_;
  std::optional<PictureBlocks> picture_;
};

}  // namespace capture
