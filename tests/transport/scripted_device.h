#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "transport/raw_device.h"

namespace pmddb832::tests {

using Bytes = std::vector<std::uint8_t>;

// The bytes of a text, and a run of one value: parts of a conversation.
Bytes Text(std::string_view text);
Bytes Fill(std::size_t count, std::uint8_t value);
Bytes operator+(Bytes left, const Bytes& right);
// The bytes of "1C 49", white space is free, and that text of them.
Bytes FromHex(std::string_view hex);
std::string Hex(const Bytes& bytes);

// A device that knows in advance what the driver must send and read, transfer by transfer. A
// transfer that is not the next one of the script fails and is noted as a complaint:
//
//   device.Expect({0x1C, 0x46}).Reply(Fill(16, 0));
//   ... call the driver ...
//   CHECK(device.Verdict() == "as scripted");
class ScriptedDevice final : public RawDevice {
 public:
  // The driver writes exactly these bytes in one transfer.
  ScriptedDevice& Expect(Bytes bytes);
  // The driver writes so many bytes in one transfer, whichever they are.
  ScriptedDevice& ExpectAny(std::size_t length);
  // The driver reads exactly as many bytes as these in one transfer, and gets them.
  ScriptedDevice& Reply(Bytes bytes);
  // The driver reads `requested` bytes and gets fewer, with success.
  ScriptedDevice& ShortReply(std::uint32_t requested, Bytes bytes);
  // The next transfer is a read, or a write, of any length, and fails. The read may have filled its
  // buffer before that.
  ScriptedDevice& FailNextRead(Bytes filled = {});
  ScriptedDevice& FailNextWrite();
  // The end of the script: from here on every transfer fails, as often as one is tried.
  ScriptedDevice& Unplug();

  // Transfers in hexadecimal bytes: "> 1B 65 < 06 > 01 <!" is a write, a read of one byte, another
  // write, and a read that fails; ">!" is a write that fails.
  ScriptedDevice& Converse(std::string_view conversation);

  // An acknowledged command with a parameter block: letter, ACK, block, ACK.
  ScriptedDevice& ExpectBlock(std::uint8_t prefix, char letter, Bytes block);

  // "as scripted", or the first complaint, or what the script has left.
  std::string Verdict() const;

  // Result of successful transfers: any value that is not negative.
  std::int32_t success = 0;

  // Runs within the next read of that many bytes, once.
  std::function<void()> duringRead;
  std::uint32_t duringReadOf = 0;

  std::int32_t RawReadData(void* buffer, std::uint32_t* byteCount, void* overlapped) override;
  std::int32_t RawWriteData(void* buffer, std::uint32_t byteCount, void* overlapped) override;

 private:
  enum class Kind { kWrite, kAnyWrite, kRead, kFailingWrite, kFailingRead, kUnplugged };
  struct Step {
    Kind kind;
    std::uint32_t length;
    Bytes bytes;
  };

  // Any other entry is not for the driver: a call of it is a complaint.
  void Called(const char* entry) override { Complain(entry); }
  bool IsUnplugged() const;
  static bool Takes(const Step& step, const Bytes& written);
  ScriptedDevice& Add(Kind kind, std::size_t length, Bytes bytes);
  std::int32_t Complain(const std::string& what);
  std::string Describe(const Step& step) const;

  std::vector<Step> steps_;
  std::size_t next_ = 0;
  std::string complaint_;
};

}  // namespace pmddb832::tests
