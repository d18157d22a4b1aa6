#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

namespace capture {

enum class Direction { kToScanner, kFromScanner };

// One raw read or raw write at the still-image device interface.
struct Transfer {
  Direction direction = Direction::kToScanner;
  std::uint32_t requested = 0;  // bytes that the module asked to move
  // Bytes that the device said it moved. It says so of reads only: a write counts as whole, one
  // that failed as nothing.
  std::uint32_t delivered = 0;
  std::int32_t result = 0;         // of the device interface; negative is a failure
  std::uint64_t microseconds = 0;  // from the start of the capture to the end of the transfer
  // The bytes that a read delivered, or all that a write was given. None where only the length, the
  // checksum and the last byte of image data were kept.
  std::optional<std::vector<std::uint8_t>> bytes;
  std::uint32_t checksum = 0;  // CRC-32 of these bytes
  bool isImage = false;        // a block of the picture's data
  // Of image data: the last byte that was delivered, which with extended commands is the status of
  // the block.
  std::uint8_t lastByte = 0;

  // The bytes; empty where there are none.
  std::span<const std::uint8_t> Kept() const {
    return bytes.has_value() ? std::span<const std::uint8_t>(*bytes)
                             : std::span<const std::uint8_t>();
  }

  bool operator==(const Transfer&) const = default;
};

// What was delivered where nothing else is told.
inline std::uint32_t UsuallyDelivered(const Transfer& transfer) {
  const bool failedWrite = transfer.direction == Direction::kToScanner && transfer.result < 0;
  return failedWrite ? 0 : transfer.requested;
}

// A member of the settings record that changed: by the host before the call that follows, or by
// the module during the call whose end follows. The record is all zero at first. Its two pointers
// are never among them.
struct SettingsChange {
  bool byModule = false;
  std::uint32_t offset = 0;         // of the member, as in kScannerSettingsFields
  std::vector<std::uint8_t> bytes;  // its whole new value

  bool operator==(const SettingsChange&) const = default;
};

// A named number that went into a call or came out of it.
struct Value {
  std::string name;
  std::uint32_t value = 0;

  bool operator==(const Value&) const = default;
};

// The host enters an export. The transfers up to the matching CallEnd are what the module did.
struct CallBegin {
  std::string name;  // of the export: "PMInitAcquire"
  std::vector<Value> arguments;
  std::uint64_t microseconds = 0;

  bool operator==(const CallBegin&) const = default;
};

// The export has returned.
struct CallEnd {
  std::string name;
  std::vector<Value> results;
  std::optional<std::uint32_t> imageChecksum;  // PMAcquireImage: CRC-32 of the delivered lines
  std::uint64_t microseconds = 0;

  bool operator==(const CallEnd&) const = default;
};

using Entry = std::variant<CallBegin, SettingsChange, Transfer, CallEnd>;

// A whole conversation in its order.
struct Capture {
  std::vector<Entry> entries;
  std::vector<std::uint32_t> lines;  // where each entry stands in its file, from 1; or empty
};

// The line of an entry in its file, 0 when the capture comes from none.
inline std::uint32_t LineOf(const Capture& capture, std::size_t entry) {
  return entry < capture.lines.size() ? capture.lines[entry] : 0;
}

}  // namespace capture
