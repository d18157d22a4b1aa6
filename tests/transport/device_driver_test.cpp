#include <doctest/doctest.h>

#include <optional>
#include <string>

#include "tests/interface/module_fixture.h"

namespace pmddb832::tests {
namespace {

struct InterfaceMode : ModuleFixture {
  DeviceDriver channel;
};

// Direct mode, with entries that note their calls and answer `status`.
struct DirectMode : ModuleFixture {
  DirectMode() {
    settings.useDeviceInterface = 0;
    calls.clear();
    status = 0;
    Bind(channel);
  }

  static std::uint32_t Note(const std::string& call) {
    calls += call + "; ";
    return status;
  }

  static void Bind(DeviceDriver& driver) {
    driver.openEntry = [] { return Note("open"); };
    driver.closeEntry = [](std::uintptr_t argument) { Note("close " + std::to_string(argument)); };
    driver.readEntry = [](std::uint8_t* buffer, std::uint32_t length) {
      for (std::uint32_t i = 0; i < length; ++i) buffer[i] = 0x5A;
      return Note("read " + std::to_string(length));
    };
    driver.writeEntry = [](const std::uint8_t* buffer, std::uint32_t length) {
      return Note("write " + Hex({buffer, buffer + length}));
    };
    driver.readyEntry = [] { return Note("ready"); };
  }

  static inline std::string calls;
  static inline std::uint32_t status = 0;
  DeviceDriver channel;
};

}  // namespace

TEST_CASE_FIXTURE(InterfaceMode, "a fresh channel is closed and has no handle and no entries") {
  CHECK(channel.opened == 0);
  CHECK(channel.deviceHandle == 0);
  CHECK((channel.openEntry == nullptr));
  CHECK((channel.closeEntry == nullptr));
  CHECK((channel.readEntry == nullptr));
  CHECK((channel.writeEntry == nullptr));
  CHECK((channel.readyEntry == nullptr));
}

TEST_CASE_FIXTURE(InterfaceMode, "interface mode: a fresh channel opens without a transfer") {
  CHECK(channel.Open() == 1);
  CHECK(channel.opened == 1);
}

TEST_CASE_FIXTURE(DirectMode, "direct mode: a fresh channel opens without a call of its entry") {
  CHECK(channel.Open() == 1);
  CHECK(channel.opened == 1);
  CHECK(calls.empty());
}

TEST_CASE_FIXTURE(DirectMode, "two opens and one close leave the channel closed") {
  CHECK(channel.Open() == 1);
  CHECK(channel.Open() == 1);
  channel.Close(settings);
  CHECK(channel.opened == 0);
  channel.Close(settings);
  CHECK(calls == "close 0; ");
}

TEST_CASE_FIXTURE(DirectMode, "the close entry is called once per open, with 0, and may fail") {
  status = 5;
  for (int i = 0; i < 2; ++i) {
    CHECK(channel.Open() == 1);
    channel.Close(settings);
    CHECK(channel.opened == 0);
  }
  CHECK(calls == "close 0; close 0; ");
}

TEST_CASE_FIXTURE(DirectMode, "in interface mode an open channel closes without its entry") {
  channel.Open();
  settings.useDeviceInterface = 1;
  channel.Close(settings);
  CHECK(channel.opened == 0);
  CHECK(calls.empty());
}

TEST_CASE_FIXTURE(DirectMode, "direct mode is ready when its entry answers 0") {
  CHECK(channel.IsReady(settings) == 1);
  for (const std::uint32_t answer : {1U, 0x80000000U, 0xFFFFFFFFU}) {
    status = answer;
    CHECK(channel.IsReady(settings) == 0);
  }
}

TEST_CASE_FIXTURE(InterfaceMode, "interface mode is ready without a device; transfers fail") {
  settings.deviceInterface = nullptr;
  std::uint8_t byte = 0x11;
  CHECK(channel.IsReady(settings) == 1);
  CHECK(channel.Read(settings, &byte, 1) == 4);
  CHECK(channel.Write(settings, &byte, 1) == 3);
  CHECK(byte == 0x11);
}

TEST_CASE_FIXTURE(DirectMode,
                  "interface mode neither asks the ready entry nor transfers by entries") {
  settings.useDeviceInterface = 0x80000000;
  device.Expect({0x1B, 0x49}).Reply({0x02});
  Bytes bytes{0x1B, 0x49};
  CHECK(channel.IsReady(settings) == 1);
  CHECK(channel.Write(settings, bytes.data(), 2) == 0);
  CHECK(channel.Read(settings, bytes.data(), 1) == 0);
  CHECK(calls.empty());
}

TEST_CASE_FIXTURE(InterfaceMode,
                  "bytes go through the device as they are, also on a closed channel") {
  device.Expect({0x00, 0xFF, 0x1C}).Reply({0x06, 0x15, 0x00, 0xFF});
  const Bytes sent{0x00, 0xFF, 0x1C};
  Bytes received(4);
  CHECK(channel.Write(settings, sent.data(), 3) == 0);
  CHECK(channel.Read(settings, received.data(), 4) == 0);
  CHECK(Hex(received) == "06 15 00 FF");
  CHECK(channel.opened == 0);
}

TEST_CASE_FIXTURE(InterfaceMode, "transfers of no bytes still go to the device") {
  device.Expect({}).Reply({});
  std::uint8_t byte = 0;
  CHECK(channel.Write(settings, &byte, 0) == 0);
  CHECK(channel.Read(settings, &byte, 0) == 0);
}

TEST_CASE_FIXTURE(InterfaceMode, "a read that delivers less than asked counts as success") {
  device.ShortReply(4, {0x02});
  Bytes bytes(4, 0xEE);
  CHECK(channel.Read(settings, bytes.data(), 4) == 0);
  CHECK(Hex(bytes) == "02 EE EE EE");
}

TEST_CASE_FIXTURE(InterfaceMode, "a result that is not negative is success") {
  std::uint8_t byte = 0;
  for (const std::int32_t result : {0, 1, 0x7FFFFFFF}) {
    device.success = result;
    device.Expect({0x00}).Reply({0x00});
    CHECK(channel.Write(settings, &byte, 1) == 0);
    CHECK(channel.Read(settings, &byte, 1) == 0);
  }
}

TEST_CASE_FIXTURE(InterfaceMode, "a negative result is 3 for a write and 4 for a read") {
  std::uint8_t byte = 0;
  device.FailNextWrite().FailNextRead();
  CHECK(channel.Write(settings, &byte, 1) == 3);
  CHECK(channel.Read(settings, &byte, 1) == 4);
}

TEST_CASE_FIXTURE(DirectMode, "direct mode passes buffer, length and status on unchanged") {
  Bytes bytes{0x1B, 0x40};
  CHECK(channel.Write(settings, bytes.data(), 2) == 0);
  CHECK(channel.Read(settings, bytes.data(), 1) == 0);
  CHECK(Hex(bytes) == "5A 40");
  status = 0x12345678;
  CHECK(channel.Write(settings, bytes.data(), 1) == 0x12345678);
  CHECK(channel.Read(settings, bytes.data(), 0) == 0x12345678);
  CHECK(calls == "write 1B 40; read 1; write 5A; read 0; ");
}

TEST_CASE_FIXTURE(InterfaceMode, "direct mode without entries fails and crashes nothing") {
  settings.useDeviceInterface = 0;
  std::uint8_t byte = 0;
  CHECK(channel.IsReady(settings) == 0);
  CHECK(channel.Read(settings, &byte, 1) == 4);
  CHECK(channel.Write(settings, &byte, 1) == 3);
  CHECK(channel.Open() == 1);
  channel.Close(settings);
  CHECK(channel.opened == 0);
}

TEST_CASE_FIXTURE(InterfaceMode, "the support mask is 0xFFFF, whatever the mode and the state") {
  CHECK(channel.GetScanServerSupportFunction() == 0xFFFF);
  channel.Open();
  CHECK(channel.GetScanServerSupportFunction() == 0xFFFF);
  settings.useDeviceInterface = 0;
  CHECK(channel.GetScanServerSupportFunction() == 0xFFFF);
}

TEST_CASE_FIXTURE(InterfaceMode, "the class of the operating system follows its version") {
  struct Row {
    platform::OperatingSystemVersion version;
    std::uint32_t systemClass;
  };
  // platform id, major, minor
  const Row rows[] = {{{0, 3, 95}, 1}, {{1, 4, 0}, 2},   {{1, 4, 9}, 2},          {{1, 4, 10}, 3},
                      {{1, 4, 90}, 3}, {{2, 3, 51}, 0},  {{2, 4, 0}, 0},          {{2, 5, 0}, 4},
                      {{2, 10, 0}, 4}, {{3, 10, 90}, 2}, {{0xFFFFFFFF, 5, 0}, 2}, {{2, ~0U, 0}, 4},
                      {{1, 0, ~0U}, 3}};
  for (const Row& row : rows) {
    CAPTURE(row.version.platformId);
    CAPTURE(row.version.major);
    CAPTURE(row.version.minor);
    system.version = row.version;
    CHECK(channel.GetOpsys() == row.systemClass);
  }
  system.version = std::nullopt;
  CHECK(channel.GetOpsys() == 2);
}

TEST_CASE_FIXTURE(DirectMode, "destroying an open channel closes it, a closed one not") {
  {
    DeviceDriver closed;
    Bind(closed);
  }
  CHECK(calls.empty());
  {
    DeviceDriver open;
    Bind(open);
    open.recordAtEnd = &settings;
    open.Open();
  }
  CHECK(calls == "close 0; ");
  {
    DeviceDriver withoutRecord;
    Bind(withoutRecord);
    withoutRecord.Open();
  }
  CHECK(calls == "close 0; ");
}

}  // namespace pmddb832::tests
