#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "capture/decode/decode_commands.h"
#include "capture/decode/decode_exchange.h"
#include "capture/decode/decode_image.h"
#include "capture/file/capture.h"

namespace capture {

// Follows a conversation transfer by transfer, and puts together what belongs together.
class Narrator {
 public:
  // `line` is that of the transfer in its file, 0 when there is none.
  void Take(const Transfer& transfer, std::uint32_t line);

  // The exchanges that began since the last call.
  std::vector<Exchange> Release();

 private:
  using Bytes = std::span<const std::uint8_t>;
  enum class Expected {
    kNothing,
    kCommandAcknowledge,  // of the command's letter
    kParameters,
    kAcknowledge,  // of parameters, or of a byte that was sent alone
    kReply,
    kReplyData,
  };

  void TakeWrite(const Transfer& transfer);
  void BeginCommand(const CommandRow& row);
  void TakeParameters(Bytes block);
  void TakeControl(std::uint8_t byte);
  void TakeStrayWrite(Bytes bytes);

  void TakeRead(const Transfer& transfer);
  bool NoteReadFailure(const Transfer& transfer);
  void TakeAcknowledge(Bytes bytes);
  void TakeReply(Bytes bytes);
  void FinishReply();
  void BeginImage();
  void TakeImage(const Transfer& transfer);
  void TakeStrayRead(const Transfer& transfer);

  void Begin(std::string title);
  void BeginBlock();
  void Add(const FieldRow& row);
  void AddPart(const std::string& part) { current_->parts.push_back(part); }
  void NoteTrouble();
  void AddTrouble(const std::string& part);
  void AddFields(const std::vector<FieldRow>& rows, std::size_t blockBytes);
  void NoteWait(const Transfer& transfer);
  bool AwaitsBlock() const;

  std::vector<Exchange> exchanges_;
  std::optional<Exchange> current_;
  Expected expected_ = Expected::kNothing;
  const CommandRow* command_ = nullptr;
  std::vector<std::uint8_t> reply_;
  ScanPlan plan_;
  std::unique_ptr<BlockSequence> blocks_;
  std::map<const CommandRow*, std::vector<FieldRow>> told_;  // what was last said, told in rows
  std::uint32_t currentLine_ = 0;
  std::uint64_t lastMicroseconds_ = 0;
};

}  // namespace capture
