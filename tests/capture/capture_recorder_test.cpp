#include <doctest/doctest.h>

#include "capture/file/capture_writer.h"
#include "capture/record/recording_device.h"
#include "transport/raw_device.h"

namespace {

using namespace capture;
using Bytes = std::vector<std::uint8_t>;

// Answers every read with as many bytes of its answer as there are.
class AnsweringDevice final : public pmddb832::RawDevice {
 public:
  std::int32_t RawReadData(void* buffer, std::uint32_t* byteCount, void*) override {
    *byteCount = static_cast<std::uint32_t>(answer.size());
    std::copy(answer.begin(), answer.end(), static_cast<std::uint8_t*>(buffer));
    return result;
  }
  std::int32_t RawWriteData(void*, std::uint32_t, void*) override { return result; }
  std::int32_t LockDevice(std::uint32_t milliseconds) override {
    lockedFor = milliseconds;
    return 0;
  }

  Bytes answer;
  std::int32_t result = 0;
  std::uint32_t lockedFor = 0;
};

// A recorded device, with a clock that a test turns.
struct Recording {
  explicit Recording(bool keepsImageData = false)
      : recorder([this](const Entry& entry) { entries.push_back(entry); },
                 [this] { return microseconds; }, keepsImageData),
        device(answering, recorder) {
    recorder.Watch(settings);
  }

  void Read(std::uint32_t bytes) {
    Bytes buffer(bytes);
    device.RawReadData(buffer.data(), &bytes, nullptr);
  }
  void Write(Bytes bytes) {
    device.RawWriteData(bytes.data(), static_cast<std::uint32_t>(bytes.size()), nullptr);
  }

  const Transfer& LastTransfer() const { return std::get<Transfer>(entries.back()); }

  std::vector<Entry> entries;
  std::uint64_t microseconds = 7;
  pmddb832::ScannerSettings settings{};
  AnsweringDevice answering;
  Recorder recorder;
  RecordingDevice device;
};

TEST_CASE("recorder: a write is kept with its bytes, result and time") {
  Recording recording;
  recording.Write({0x1C, 0x49});
  CHECK(EntryText(recording.entries.at(0)) == "write 2 : 1C 49");
  CHECK(recording.LastTransfer().microseconds == 7);
}

TEST_CASE("recorder: a read is kept as it came, and reaches the module") {
  Recording recording;
  recording.answering.answer = {0x02, 0x80};
  recording.answering.result = static_cast<std::int32_t>(0x80070079);
  Bytes buffer(4);
  std::uint32_t count = 4;
  CHECK(recording.device.RawReadData(buffer.data(), &count, nullptr) < 0);
  CHECK(count == 2);
  CHECK(buffer == Bytes{0x02, 0x80, 0, 0});
  CHECK(EntryText(recording.entries.at(0)) == "read 4 got 2 result 80070079 : 02 80");
}

TEST_CASE("recorder: a failed write counts as nothing") {
  Recording recording;
  recording.answering.result = -1;
  recording.Write({0x06});
  CHECK(EntryText(recording.entries.at(0)) == "write 1 result FFFFFFFF : 06");
}

TEST_CASE("recorder: a device that claims more than was asked for is not believed") {
  Recording recording;
  recording.answering.answer = {1, 2, 3, 4};
  Bytes buffer(8);
  std::uint32_t count = 3;
  recording.device.RawReadData(buffer.data(), &count, nullptr);
  CHECK(EntryText(recording.entries.at(0)) == "read 3 : 01 02 03");
}

TEST_CASE("recorder: what a read of the picture brings is kept by length, checksum and last byte") {
  Recording recording;
  recording.recorder.BeginCall("PMAcquireImage", {});
  recording.answering.answer = Bytes(129, 0xA5);
  recording.answering.answer.back() = 0;
  recording.Read(129);
  CHECK(EntryText(recording.entries.back()) == "read 129 crc 60758F26 last 00");
  CHECK_FALSE(recording.LastTransfer().bytes.has_value());
}

TEST_CASE("recorder: the bytes of the picture are kept when asked") {
  Recording recording(true);
  recording.recorder.BeginCall("PMAbortScan", {});
  recording.answering.answer = Bytes(129, 0xA5);
  recording.Read(129);
  CHECK(recording.LastTransfer().isImage);
  CHECK(recording.LastTransfer().bytes == Bytes(129, 0xA5));
}

TEST_CASE("recorder: replies are kept in full, during the picture and outside of it") {
  Recording recording;
  recording.answering.answer = Bytes(128, 1);
  recording.recorder.BeginCall("PMAcquireImage", {});
  recording.Read(128);
  CHECK(recording.LastTransfer().bytes == Bytes(128, 1));
  recording.recorder.EndCall({});
  recording.answering.answer = Bytes(129, 1);
  recording.recorder.BeginCall("PMOpenScanner", {});
  recording.Read(129);
  CHECK(recording.LastTransfer().bytes == Bytes(129, 1));
}

TEST_CASE("recorder: the host's settings stand in front of the call, the module's in it") {
  Recording recording;
  recording.settings.resolution = 300;
  recording.recorder.BeginCall("PMOpenScanner", {});
  recording.settings.commandLevel = 8;
  recording.recorder.EndCall({{"result", 1}});
  REQUIRE(recording.entries.size() == 4);
  CHECK(EntryText(recording.entries[0]) == "host resolution = 300");
  CHECK(EntryText(recording.entries[1]) == "call PMOpenScanner");
  CHECK(EntryText(recording.entries[2]) == "module commandLevel = 8");
  CHECK(EntryText(recording.entries[3]) == "return PMOpenScanner result=1");
}

TEST_CASE("recorder: a setting is told when it changes, and pointers never") {
  Recording recording;
  recording.settings.resolution = 300;
  recording.settings.deviceInterface = &recording.device;
  recording.recorder.BeginCall("PMFeed", {});
  recording.recorder.EndCall({});
  recording.recorder.BeginCall("PMFeed", {});
  recording.recorder.EndCall({});
  CHECK(recording.entries.size() == 5);
}

TEST_CASE("recorder: the rest of the device interface goes to the device") {
  Recording recording;
  CHECK(recording.device.LockDevice(500) == 0);
  CHECK(recording.answering.lockedFor == 500);
  CHECK(recording.device.AddRef() == 1);
  CHECK(recording.device.GetStatus(nullptr) < 0);
  CHECK(recording.entries.empty());
}

}  // namespace
