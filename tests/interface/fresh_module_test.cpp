#include <doctest/doctest.h>

#include <iterator>
#include <string>

#include "platform/trace.h"
#include "tests/extended/extended_fixture.h"
#include "tests/standard/standard_fixture.h"

// What a host sees of a module, a command set and a scan that nothing has happened to yet.

namespace pmddb832::tests {
namespace {

// Taken before any test runs: what the library is loaded with.
struct Loaded {
  bool nothingExists = currentCommandSet == nullptr && currentChannel == nullptr &&
                       currentSettings == nullptr && moduleInstance == nullptr &&
                       platform::currentLog == nullptr;
  std::uint32_t error = initialisationError;
  std::uint32_t extendedSupportFlag = extendedSupport;
  std::uint32_t serverSupportBits = serverSupport;
  std::string level{std::begin(commandLevelString), std::end(commandLevelString)};
};
const Loaded kLoaded;

// A standard scanner that refused its reset: it was not identified.
struct UnidentifiedStandard : standard::StandardScanner {
  UnidentifiedStandard() {
    AnswerProbe();
    device.Expect({0x1B, 0x40}).Reply({kNak});
    REQUIRE(PMOpenScanner(&settings) == 0);
    REQUIRE(PMGetScanError() == 1);
  }
};

// The same of the extended set.
struct UnidentifiedExtended : extended::ExtendedScanner {
  UnidentifiedExtended() {
    AnswerProbe();
    device.Expect({0x1B, 0x40}).Reply({kNak});
    REQUIRE(PMOpenScanner(&settings) == 0);
    REQUIRE(PMGetScanError() == 0);
  }
};

struct Size {
  std::uint32_t result;
  std::uint32_t width = kUnwritten;
  std::uint32_t height = kUnwritten;
  bool operator==(const Size&) const = default;
};

Size PaperSize(std::uint32_t option) {
  Size size{};
  size.result = PMGetScanPaperSize(option, &size.width, &size.height);
  return size;
}

}  // namespace

TEST_CASE("a module that was just loaded has no error, no scanner and no probe behind it") {
  CHECK(kLoaded.nothingExists);
  CHECK(kLoaded.error == 0);
  CHECK(kLoaded.extendedSupportFlag == 0);
  CHECK(kLoaded.serverSupportBits == 0);
  CHECK(kLoaded.level == std::string(3, '\0'));
}

TEST_CASE_FIXTURE(extended::ExtendedScanner,
                  "the record of the open is the one that later calls use") {
  PMSetScannerHardware(nullptr);
  CHECK(Open() == 1);
  CHECK(currentSettings == &settings);
  CHECK(currentChannel->opened == 1);
  AnswerStatus(extended::Status(0x40));
  CHECK(PMGetOptionStatus(2) == 31);
}

TEST_CASE_FIXTURE(UnidentifiedStandard,
                  "standard: a scanner that was not identified has no status") {
  CHECK(PMGetOptionStatus(0) == 0);  // asks nothing
  CHECK(PMGetOptionStatus(2) == 0);
  CHECK(PaperSize(0) == Size{0, 0, 0});
  CHECK(PaperSize(2) == Size{0, 0, 0});
}

TEST_CASE_FIXTURE(UnidentifiedStandard,
                  "standard: without an identity nothing is scanned or ejected") {
  InitAcquire();
  PMAbortScan();
  CHECK(PMGetScanError() == 0);
  CheckAcquireFails(64, 9);
  PMEject(nullptr);
  PMCloseScanner();
  CHECK(currentChannel->opened == 1);  // by the open, which failed behind it
}

TEST_CASE_FIXTURE(UnidentifiedStandard,
                  "standard: behind a failed open a feed is sent, a close not") {
  device.Expect({0x19}).Reply({0x06});
  PMFeed(nullptr);
  PMFeed(nullptr);
  PMCloseScanner();
}

TEST_CASE_FIXTURE(UnidentifiedExtended,
                  "a scanner that was not identified is asked for its status") {
  AnswerStatus(extended::Status(0x40));
  CHECK(PMGetOptionStatus(2) == 31);
  AnswerIdentity();
  CHECK(PaperSize(2) == Size{0, 0, 0});
}

TEST_CASE_FIXTURE(UnidentifiedExtended,
                  "without an identity nothing is scanned, ejected or closed") {
  InitAcquire();
  CheckAcquireFails(64, 9);
  PMEject(nullptr);
  PMCloseScanner();
  CHECK(currentChannel->opened == 1);
}

TEST_CASE("a first scan of a type that the extended set does not know has plain bytes for rows") {
  for (const std::uint32_t type : {1u, 3u, 4u, 9u, 0xFFFFFFFFu}) {
    CAPTURE(type);
    extended::OpenExtended scanner;
    scanner.settings.pixelType = type;
    scanner.settings.invertMono = 1;
    const Bytes block = With(extended::ParameterBlock(), 24, {0x00, 0x00});
    scanner.StartScan(block, extended::Header(0, 0, 64), 1);
    scanner.SendLastBlock(Fill(64, 0xF0));
    CHECK(scanner.Acquire(64).Rows(16) == "0F 0F 0F 0F");  // as line art, inverted
  }
}

TEST_CASE("standard: a first scan of a type that is not listed has plain bytes for rows") {
  for (const std::uint32_t type : {9u, 0xFFFFFFFFu}) {
    CAPTURE(type);
    standard::OpenB4 scanner;
    scanner.settings.pixelType = type;
    scanner.settings.invertMono = 1;
    scanner.StartScanOf(standard::Replaced(standard::UploadOf("B4"), "D 08", "D 01"),
                        standard::BlockHeader(0x20, 16, 4), 4, 1);
    scanner.device.Reply(Fill(64, 0xF0));
    CHECK(scanner.Acquire(64).Rows(16) == "0F 0F 0F 0F");
  }
}

TEST_CASE_FIXTURE(extended::OpenExtended,
                  "automatic focus before any set-up keeps colours in order") {
  settings.pixelType = 5;
  AcceptParameters(With(extended::ParameterBlock(), 24, {0x13}));
  device.ExpectBlock(0x1B, 'p', {0xFF}).Expect({0x1B, 0x71});
  device.Reply({0x02, 0x00, 0x02, 0x00}).Reply({0x00, 0x41});
  CHECK(PMSetFocus(1, 0) == 1);
  CheckAcquireFails(64, 9);  // it is no set-up
}

TEST_CASE_FIXTURE(extended::OpenExtended, "automatic focus of an unknown type sends no depth") {
  settings.pixelType = 3;
  AcceptParameters(With(extended::ParameterBlock(), 24, {0x00, 0x00}));
  device.ExpectBlock(0x1B, 'p', {0xFF}).Unplug();
  CHECK(PMSetFocus(1, 0) == 156);
}

TEST_CASE_FIXTURE(standard::OpenB8, "standard: automatic focus before any set-up sends one bit") {
  settings.pixelType = 9;
  AcceptUpload(standard::Replaced(standard::UploadOf("B8"), "D 08", "D 01"));
  device.ExpectBlock(0x1B, 'p', {0xFF}).Unplug();
  CHECK(PMSetFocus(1, 0) == 156);
  CheckAcquireFails(64, 9);  // it is no set-up
}

}  // namespace pmddb832::tests
