#include "simulator/faults/conversation_tracker.h"

#include <array>

#include "simulator/device/protocol_bytes.h"

namespace simulator {
namespace {

constexpr std::string_view kReset = "ESC @";

// Commands of one byte.
struct ByteRow {
  std::uint8_t byte;
  std::string_view name;
};
constexpr std::array kBytes{ByteRow{kFormFeed, "FF"}, ByteRow{kEndOfMedium, "EM"},
                            ByteRow{kCancel, "CAN"}};

// Where in the reply to a status query the main status stands.
struct StatusRow {
  std::string_view command;
  std::size_t offset;
};
constexpr std::array kStatusQueries{StatusRow{"FS F", 0}, StatusRow{"ESC F", 1},
                                    StatusRow{"ESC f", 4}};

std::string NameOf(std::span<const std::uint8_t> command) {
  if (command.size() >= 2) {
    return (command[0] == kEscape ? "ESC " : "FS ") + std::string(1, static_cast<char>(command[1]));
  }
  for (const ByteRow& row : kBytes) {
    if (row.byte == command[0]) return std::string(row.name);
  }
  return {};
}

// The scanner acknowledges these at once, as they have no parameters.
bool IsDoneWhenAcknowledged(std::string_view command) {
  return command == kReset || command.find(' ') == std::string_view::npos;
}

}  // namespace

bool ConversationTracker::IsCommand(Bytes bytes) const {
  if (awaitsParameters_ || bytes.empty()) return false;
  const bool prefixed = bytes[0] == kEscape || bytes[0] == kFileSeparator;
  return prefixed ? bytes.size() >= 2 : bytes.size() == 1 && !NameOf(bytes).empty();
}

const ConversationPlace& ConversationTracker::Write(Bytes bytes) {
  place_.transfer = NextTransfer();
  place_.read.reset();
  if (IsCommand(bytes)) {
    place_.command = NameOf(bytes);
    place_.occurrence = ++occurrences_[place_.command];
    place_.write = 0;
  } else {
    ++place_.write;
  }
  reads_ = 0;
  replyBytes_ = 0;
  return place_;
}

const ConversationPlace& ConversationTracker::Read() {
  place_.transfer = NextTransfer();
  place_.read = reads_++;
  return place_;
}

void ConversationTracker::Delivered(Bytes bytes) {
  replyBytes_ += bytes.size();
  awaitsParameters_ = place_.write == 0 && replyBytes_ == 1 && bytes.size() == 1 &&
                      bytes[0] == kAck && !IsDoneWhenAcknowledged(place_.command);
}

std::optional<std::size_t> ConversationTracker::MainStatusAmong(std::size_t count) const {
  for (const StatusRow& row : kStatusQueries) {
    if (row.command != place_.command || place_.write != 0) continue;
    const bool comesNow = row.offset >= replyBytes_ && row.offset < replyBytes_ + count;
    return comesNow ? std::optional(row.offset - replyBytes_) : std::nullopt;
  }
  return std::nullopt;
}

}  // namespace simulator
