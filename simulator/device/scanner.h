#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/device/reply_queue.h"
#include "simulator/faults/defects.h"
#include "transport/raw_device.h"

namespace simulator {

// The device side of the wire, for every family: it takes the driver's bytes, cuts them into
// commands and parameter blocks, queues the scanner's answers, and judges what it was sent.
// The families say which commands they know and what they answer.
class Scanner : public pmddb832::RawDevice {
 public:
  virtual ~Scanner() = default;
  Scanner(const Scanner&) = delete;
  Scanner& operator=(const Scanner&) = delete;

  // What the driver sent, or asked to read, that the protocol does not allow at that moment: a
  // sentence each. What a defect of the scanner brings about is not held against the driver.
  const std::vector<std::string>& Violations() const { return violations_; }

  // Why the scanner answered NAK or refused a transfer: a sentence each.
  const std::vector<std::string>& Refusals() const { return refusals_; }

  // What is wrong with its cable; a FaultInjector before the scanner brings it about.
  const std::map<std::string_view, Fault>& CableFaults() const { return defects.cable; }

  // Somebody disturbs the conversation on its way: until a reset nothing is a violation.
  void Disturb() { ExcuseOutOfStep(); }

  // Forgets all that the scanner has to say before the driver writes again.
  void DropAnswer();

  // A read of more than the scanner has to say fails after all that there was has been delivered;
  // a real scanner would hang. Bytes may come and go in any portions.
  std::int32_t RawReadData(void* buffer, std::uint32_t* byteCount, void* overlapped) final;
  std::int32_t RawWriteData(void* buffer, std::uint32_t byteCount, void* overlapped) final;

 protected:
  using Bytes = std::span<const std::uint8_t>;

  explicit Scanner(const Defects& defectsOfThisOne) : defects(defectsOfThisOne) {}

  // Bytes in the parameter block of a command, 0 when it has none; nothing for a command that the
  // scanner does not know.
  virtual std::optional<std::uint32_t> ParameterBytes(std::uint8_t prefix,
                                                      std::uint8_t letter) const = 0;

  // Answers a command; for one with a parameter block, answers the block (the letter has been
  // acknowledged before).
  virtual void Execute(std::uint8_t prefix, std::uint8_t letter, Bytes parameters) = 0;

  // Answer the bytes EM and FF.
  virtual void FeedPage() = 0;
  virtual void EjectPage() = 0;

  // Puts some more of the block that is under way into the queue; false when none is.
  virtual bool SendMore() = 0;

  // The number of the block that waits for the driver's ACK or CAN, if one does; then what the
  // driver's answer does. A transfer also ends when the driver sends something else.
  virtual std::optional<std::uint32_t> BlockAwaitingAnswer() const = 0;
  virtual void ContinueTransfer() = 0;
  virtual void EndTransfer() = 0;

  void Answer(std::uint8_t byte) { replies.Put(byte); }
  void Answer(Bytes bytes) { replies.Put(bytes); }
  // STX, a status byte, the count of the data and the data; without STX only a header comes, with
  // a NAK in that place.
  void AnswerInformation(std::uint8_t status, Bytes data, bool withoutStx);
  void Refuse(const std::string& reason);  // answers NAK
  void NoteRefusal(const std::string& reason) { refusals_.push_back(reason); }
  void Violate(const std::string& sentence);

  // From a defect, the reply under way ends before the driver can know: reading on is no violation.
  void ExcuseReading() { readingExcused_ = true; }
  // From a defect, the two sides get out of step: until a reset nothing is a violation.
  void ExcuseOutOfStep() { outOfStep_ = true; }
  // Forgets what was not read.
  void ClearReplies();

  const Defects defects;
  ReplyQueue replies;

 private:
  bool SendBlockPiece();
  void JudgeUnread(Bytes written);
  void JudgeReading(std::uint32_t wanted, std::uint32_t delivered);
  std::size_t Consume(Bytes bytes);
  std::size_t ConsumeParameters(Bytes bytes);
  std::size_t ConsumeLetter(Bytes bytes);
  std::size_t ConsumeBlockAnswer(Bytes bytes);
  std::size_t ConsumeFirst(Bytes bytes);
  void ExecuteWithParameters();
  void Begin(const std::optional<std::uint32_t>& parameterBytes);

  std::vector<std::string> violations_;
  std::vector<std::string> refusals_;
  bool readingExcused_ = false;
  bool outOfStep_ = false;
  bool blockInQueue_ = false;  // some of the unread bytes are image data

  struct Command {
    std::uint8_t prefix = 0;
    std::uint8_t letter = 0;
    std::string Name() const;  // "FS W"
  };
  std::optional<std::uint8_t> prefixAlone_;  // a prefix came, and its letter did not yet
  Command command_;                          // the last one
  std::size_t parametersMissing_ = 0;        // bytes of its parameter block that did not come yet
  std::vector<std::uint8_t> collected_;      // and those that did
};

}  // namespace simulator
