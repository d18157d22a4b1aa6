#include "tests/capture/sample_conversation.h"

#include <algorithm>

namespace pmddb832::tests {
namespace {

constexpr std::uint64_t kStep = 1000;  // microseconds

using capture::Direction;
using capture::Transfer;

}  // namespace

void SampleConversation::Add(const Transfer& transfer) {
  Transfer timed = transfer;
  timed.microseconds = now_ += kStep;
  capture.entries.emplace_back(timed);
}

SampleConversation& SampleConversation::Call(const std::string& name,
                                             const std::vector<capture::Value>& values) {
  openCall_ = name;
  capture.entries.emplace_back(capture::CallBegin{name, values, now_ += kStep});
  return *this;
}

SampleConversation& SampleConversation::Return(const std::vector<capture::Value>& values) {
  capture.entries.emplace_back(capture::CallEnd{openCall_, values, std::nullopt, now_ += kStep});
  return *this;
}

SampleConversation& SampleConversation::HostSets(std::uint32_t offset, const Bytes& bytes) {
  capture.entries.emplace_back(capture::SettingsChange{false, offset, bytes});
  return *this;
}

SampleConversation& SampleConversation::Write(const Bytes& bytes) {
  const auto count = static_cast<std::uint32_t>(bytes.size());
  Add({.direction = Direction::kToScanner, .requested = count, .delivered = count, .bytes = bytes});
  return *this;
}

SampleConversation& SampleConversation::Read(const Bytes& bytes) {
  return ShortRead(static_cast<std::uint32_t>(bytes.size()), bytes);
}

SampleConversation& SampleConversation::ShortRead(std::uint32_t requested, const Bytes& bytes) {
  Add({.direction = Direction::kFromScanner,
       .requested = requested,
       .delivered = static_cast<std::uint32_t>(bytes.size()),
       .bytes = bytes});
  return *this;
}

SampleConversation& SampleConversation::FailedRead(std::uint32_t requested, std::int32_t result) {
  Add({.direction = Direction::kFromScanner,
       .requested = requested,
       .result = result,
       .bytes = Bytes{}});
  return *this;
}

SampleConversation& SampleConversation::ReadImage(std::uint32_t bytes, std::uint8_t lastByte) {
  Add({.direction = Direction::kFromScanner,
       .requested = bytes,
       .delivered = bytes,
       .bytes = std::nullopt,
       .checksum = 0x12345678,
       .isImage = true,
       .lastByte = lastByte});
  return *this;
}

SampleConversation& SampleConversation::Wait(std::uint64_t microseconds) {
  now_ += microseconds;
  return *this;
}

SampleConversation& SampleConversation::Command(const Bytes& command) {
  return Write(command).Read({0x06});
}

SampleConversation& SampleConversation::Command(const Bytes& command, const Bytes& parameters) {
  return Write(command).Read({0x06}).Write(parameters).Read({0x06});
}

Bytes Repeated(std::size_t count, std::uint8_t byte) {
  return Bytes(count, byte);
}

Bytes Joined(const Bytes& first, const Bytes& second) {
  Bytes all = first;
  all.insert(all.end(), second.begin(), second.end());
  return all;
}

Bytes SampleIdentity() {
  Bytes block{'B',  '8',  0, 0, 0x58, 0x02, 0, 0, 25,   0,    0, 0, 0x60, 0x09, 0, 0,
              0,    0,    0, 0,                                                        //
              0xEC, 0x13, 0, 0, 0x6C, 0x1B, 0, 0, 0xEC, 0x13, 0, 0, 0xD0, 0x20, 0, 0,  //
              0,    0,    0, 0, 0,    0,    0, 0, 0x30, 0};
  const std::string name = "SCANNER QM-5500 ";
  block.insert(block.end(), name.begin(), name.end());
  block.resize(80);
  return block;
}

Bytes SampleParameters() {
  Bytes block{0x2C, 0x01, 0, 0, 0x2C, 0x01, 0, 0, 8,    0, 0, 0, 24, 0, 0,    0,  //
              100,  0,    0, 0, 40,   0,    0, 0, 0x10, 8, 1, 0, 16, 2, 0xFE, 0,  //
              0x80, 'n',  2, 1, 1,    0x42};
  block.resize(64);
  return block;
}

Bytes SampleTransferHeader() {
  return {0x02, 0x00, 0x40, 0x06, 0, 0, 2, 0, 0, 0, 0x20, 0x03, 0, 0};
}

SampleConversation ExtendedSample() {
  SampleConversation sample;
  sample.Call("PMOpenScanner").Command({0x1B, '@'});
  sample.Write({0x1C, 'I'}).Read(SampleIdentity());
  sample.Write({0x1C, 'F'}).Read(Joined({0x02, 0x80}, Repeated(14, 0)));
  sample.Return({{"result", 1}}).Call("PMAcquireImage", {{"bufferBytes", 4000}});
  sample.Command({0x1B, 'm'}, {64, 0xFE, 0, 0, 64, 0, 0, 0, 64});
  sample.Command({0x1C, 'W'}, SampleParameters());
  sample.Write({0x1C, 'G'}).Read(SampleTransferHeader());
  sample.Read(Joined(Repeated(1600, 0x55), {0x00})).Write({0x06});
  sample.ReadImage(1601, 0x00).Write({0x06}).Read(Joined(Repeated(800, 0x55), {0x80}));
  return sample.Return({{"status", 2}});
}

SampleConversation StandardSample() {
  SampleConversation sample;
  sample.Call("PMOpenScanner").Write({0x1B, 'I'}).Read({0x02, 0x00, 0x0D, 0x00});
  sample.Read({'B', '8', 'R', 50, 0, 'R', 0x2C, 0x01, 'A', 0xEC, 0x13, 0x6C, 0x1B});
  sample.Write({0x1B, 'f'}).Read({0x02, 0x00, 0x0B, 0x00});
  sample.Read({0x20, 0xC8, 0xEC, 0x13, 0xD0, 0x20, 0, 0, 0, 0, 0});
  sample.Return({{"result", 1}}).Call("PMAcquireImage", {{"bufferBytes", 4000}});
  sample.Command({0x1B, 'C'}, {0x13}).Command({0x1B, 'L'}, {0xFE});
  sample.Command({0x1B, 'A'}, {8, 0, 24, 0, 100, 0, 40, 0}).Command({0x1B, 'd'}, {16});
  sample.Write({0x1B, 'G'}).Read({0x02, 0x00, 100, 0, 16, 0});
  sample.Read(Repeated(1600, 0x55)).Write({0x06}).Read({0x02, 0x00, 100, 0, 16, 0});
  sample.ReadImage(1600, 0x55).Write({0x06}).Read({0x02, 0x20, 100, 0, 8, 0});
  sample.Read(Repeated(800, 0x55)).Write({0x0C}).Read({0x15});
  return sample.Return({{"status", 2}});
}

}  // namespace pmddb832::tests
