#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "capture/conversation/conversation.h"
#include "capture/decode/decode_exchange.h"
#include "capture/file/capture.h"

namespace capture {

// Tells a conversation transfer by transfer, and puts together what belongs together.
class Narrator {
 public:
  // `line` is that of the transfer in its file, 0 when there is none. Returns what its bytes are.
  Part Take(const Transfer& transfer, std::uint32_t line);

  // The exchanges that began since the last call.
  std::vector<Exchange> Release();

  const Conversation& Followed() const { return conversation_; }

 private:
  using Bytes = std::span<const std::uint8_t>;

  Part TakeWrite(const Transfer& transfer);
  void TellBlockAnswer(std::uint8_t byte, const PictureBlock& block);
  void TellStrayWrite(Bytes bytes);

  Part TakeRead(const Transfer& transfer);
  bool NoteReadFailure(const Transfer& transfer);
  void TellReply();
  Part TakePicture(const Transfer& transfer);
  void TellStrayRead(const Transfer& transfer);

  void Begin(std::string title);
  void BeginBlock(const PictureBlock& block);
  void Add(const FieldRow& row);
  void AddPart(const std::string& part) { current_->parts.push_back(part); }
  void NoteTrouble();
  void AddTrouble(const std::string& part);
  void AddFields(const std::vector<FieldRow>& rows, std::size_t blockBytes);
  void NoteWait(const Transfer& transfer);

  std::vector<Exchange> exchanges_;
  std::optional<Exchange> current_;
  Conversation conversation_;
  std::map<const pmddb832::CommandShape*, std::vector<FieldRow>>
      told_;  // what was last said, told in rows
  std::uint32_t currentLine_ = 0;
  std::uint64_t lastMicroseconds_ = 0;
};

}  // namespace capture
