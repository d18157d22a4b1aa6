#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "capture/file/capture.h"

namespace pmddb832::tests {

using Bytes = std::vector<std::uint8_t>;

// A capture, put together as it would have been recorded: one millisecond from entry to entry.
class SampleConversation {
 public:
  SampleConversation& Call(const std::string& name, const std::vector<capture::Value>& values = {});
  SampleConversation& Return(const std::vector<capture::Value>& values = {});
  SampleConversation& HostSets(std::uint32_t offset, const Bytes& bytes);
  SampleConversation& Write(const Bytes& bytes);
  SampleConversation& Read(const Bytes& bytes);
  SampleConversation& ShortRead(std::uint32_t requested, const Bytes& bytes);
  SampleConversation& FailedRead(std::uint32_t requested, std::int32_t result);
  // Image data of which only the length and the last byte were kept.
  SampleConversation& ReadImage(std::uint32_t bytes, std::uint8_t lastByte);
  SampleConversation& Wait(std::uint64_t microseconds);
  // Commands that were acknowledged, without and with parameters.
  SampleConversation& Command(const Bytes& command);
  SampleConversation& Command(const Bytes& command, const Bytes& parameters);

  capture::Capture capture;

 private:
  void Add(const capture::Transfer& transfer);

  std::string openCall_;
  std::uint64_t now_ = 0;
};

// `count` times the byte.
Bytes Repeated(std::size_t count, std::uint8_t byte);
Bytes Joined(const Bytes& first, const Bytes& second);

// Identity, status, parameters and a picture of three blocks (16, 16 and 8 lines of 100 bytes) of a
// scanner of each family, both of level B8.
SampleConversation ExtendedSample();
SampleConversation StandardSample();

// Parts of them.
Bytes SampleIdentity();
Bytes SampleParameters();
Bytes SampleTransferHeader();

}  // namespace pmddb832::tests
