#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>

#include "capture/conversation/conversation.h"

namespace simulator {

// One transfer's place in the conversation. The command is the last one that was sent, by its name
// as in "FS W"; empty before the first. FaultPlace explains the numbers.
struct ConversationPlace {
  std::uint32_t transfer = 0;
  std::string command;
  std::uint32_t occurrence = 0;
  std::uint32_t write = 0;
  std::optional<std::uint32_t> read;
};

// Counts, from the cable, what is said in a conversation.
class ConversationTracker {
 public:
  using Bytes = std::span<const std::uint8_t>;

  // The driver is about to write, or to read.
  const ConversationPlace& Write(Bytes bytes);
  const ConversationPlace& Read();

  // What the driver got by the read that was told last.
  void Delivered(Bytes bytes);

  // Of the bytes that the driver is about to get, the one that tells whether the scanner is warming
  // up; nothing when it is not among `count` of them.
  std::optional<std::size_t> MainStatusAmong(std::size_t count) const;

 private:
  capture::Conversation conversation_;
  ConversationPlace place_;
  std::uint32_t transfers_ = 0;
  std::uint32_t reads_ = 0;     // since the last write
  std::size_t replyBytes_ = 0;  // that the driver got since the last write
  std::map<std::string, std::uint32_t> occurrences_;
};

}  // namespace simulator
