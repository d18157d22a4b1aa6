#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "capture/file/capture.h"

namespace pmddb832::tests {

using Bytes = std::vector<std::uint8_t>;

// Appends numbers in a byte order.
class NumberWriter {
 public:
  explicit NumberWriter(bool bigEndian) : isBigEndian_(bigEndian) {}

  NumberWriter& Put(std::uint64_t number, std::size_t width);
  NumberWriter& Put(const Bytes& all);

  Bytes bytes;

 private:
  bool isBigEndian_;
};

// A bulk or other packet as a bus tells it.
struct BusPacket {
  std::uint64_t request = 1;
  bool isEnd = false;
  std::uint8_t kind = 3;  // bulk
  std::uint8_t endpoint = 0x02;
  std::uint8_t device = 5;
  std::uint16_t bus = 1;
  std::int32_t status = 0;
  std::uint32_t length = 0;
  Bytes data = {};
  std::uint64_t microseconds = 0;
};

// A trace in the making: a pcap file.
class BusTrace {
 public:
  // `linkType` is 189, 220 or 249.
  BusTrace(std::uint16_t linkType, bool isBigEndian, bool hasNanoseconds = false);

  void Add(const BusPacket& packet);
  // Begin and end of a transfer.
  void AddWrite(const Bytes& data, std::uint64_t end, std::int32_t status = 0);
  void AddRead(std::uint32_t asked, const Bytes& data, std::uint64_t end, std::int32_t status = 0);
  // As a system does it that moves at most so many bytes at once.
  void AddInPieces(const capture::Transfer& transfer, std::uint32_t most);

  const Bytes& File() const { return file_.bytes; }

  // The clock at the trace's first packet, 2023-11-14.
  static constexpr std::uint64_t kEpoch = 1'700'000'000'000'000;

 private:
  Bytes HeaderOf(const BusPacket& packet) const;

  std::uint16_t linkType_;
  bool isBigEndian_;
  bool hasNanoseconds_;
  NumberWriter file_;
  std::uint64_t requests_ = 0;
};

// What is in a file.
Bytes FileBytes(const std::string& name);

// The transfers alone.
capture::Capture TransfersOf(const capture::Capture& capture);

// All captures of the tests, by their names.
std::vector<std::string> CaptureFiles();
capture::Capture CaptureIn(const std::string& file);

// As text, so that a difference can be read.
std::string TextOf(const capture::Capture& capture);

}  // namespace pmddb832::tests
