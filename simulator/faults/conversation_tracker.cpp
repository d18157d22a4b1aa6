#include "simulator/faults/conversation_tracker.h"

#include <array>

#include "wire/protocol_bytes.h"

namespace simulator {
namespace {

// Commands of one byte.
struct ByteRow {
  std::uint8_t byte;
  std::string_view name;
};
constexpr std::array kBytes{ByteRow{pmddb832::kFf, "FF"}, ByteRow{pmddb832::kEm, "EM"},
                            ByteRow{pmddb832::kCan, "CAN"}};

// Where in the reply to a status query the main status stands.
struct StatusRow {
  std::string_view command;
  std::size_t offset;
};
constexpr std::array kStatusQueries{StatusRow{"FS F", 0}, StatusRow{"ESC F", 1},
                                    StatusRow{"ESC f", 4}};

// Also of letters that no scanner knows; empty for bytes that are no command.
std::string NameOf(std::span<const std::uint8_t> bytes) {
  if (bytes.size() >= 2 && (bytes[0] == pmddb832::kEsc || bytes[0] == pmddb832::kFs)) {
    return (bytes[0] == pmddb832::kEsc ? "ESC " : "FS ") +
           std::string(1, static_cast<char>(bytes[1]));
  }
  for (const ByteRow& row : kBytes) {
    if (bytes.size() == 1 && row.byte == bytes[0]) return std::string(row.name);
  }
  return {};
}

}  // namespace

const ConversationPlace& ConversationTracker::Write(Bytes bytes) {
  place_.transfer = transfers_++;
  place_.read.reset();
  const bool isParameters = conversation_.Write(bytes) == capture::Part::kParameters;
  if (std::string name = isParameters ? "" : NameOf(bytes); name.empty()) {
    ++place_.write;
  } else {
    place_.command = std::move(name);
    place_.occurrence = ++occurrences_[place_.command];
    place_.write = 0;
  }
  reads_ = 0;
  replyBytes_ = 0;
  return place_;
}

const ConversationPlace& ConversationTracker::Read() {
  place_.transfer = transfers_++;
  place_.read = reads_++;
  return place_;
}

void ConversationTracker::Delivered(Bytes bytes) {
  replyBytes_ += bytes.size();
  conversation_.Read(bytes, false);
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
