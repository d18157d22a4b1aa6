#include "tests/standard/standard_fixture.h"

// How large the receive buffer is, behind whichever scan: the lines per block tell it.

namespace pmddb832::tests::standard {
namespace {

constexpr std::uint32_t kFresh = 3;  // the host asks for a buffer of the usual size

struct Receiver : StandardScanner {
  Receiver() : StandardScanner("B4") {}

  // A scan of that width, which fails behind the lines per block. The upload fails too: the width
  // need not be one that the scanner can deliver.
  void CheckLines(std::uint32_t width, std::size_t bufferBytes, std::uint8_t lines,
                  std::uint32_t request = kUnwritten) {
    CAPTURE(width);
    CAPTURE(bufferBytes);
    settings.areaWidthPx = width;
    InitAcquire();
    device.Expect({0x1B, 0x46}).FailNextRead();
    device.ExpectBlock(0x1B, 'd', {lines}).FailNextWrite();
    CHECK(Acquire(bufferBytes, request).record.status == kFailed);
  }
};

TEST_CASE_FIXTURE(Receiver, "standard: a host buffer of 65280 bytes receives into 65280 bytes") {
  CheckLines(320, 65280, 203);  // (65280 - 10) / 320
  CheckLines(320, 65279, 203);  // 65279 / 320
}

TEST_CASE_FIXTURE(Receiver, "standard: behind a small buffer a large one receives 65280 bytes") {
  CheckLines(320, 320, 1);
  CheckLines(320, 65280, 203);
}

TEST_CASE_FIXTURE(Receiver, "standard: behind a wide line a large buffer receives as much again") {
  CheckLines(130560, 64, 1);
  CheckLines(640, 65280, 204);  // 130560 / 640
  CheckLines(640, 640, 1);
}

TEST_CASE_FIXTURE(Receiver, "standard: a fresh buffer has 65280 bytes, whatever was before") {
  CheckLines(640, 640, 101, kFresh);
  CheckLines(130560, 64, 1);
  CheckLines(640, 640, 101, kFresh);
}

TEST_CASE_FIXTURE(Receiver, "standard: an open forgets how large the buffer was") {
  CheckLines(130560, 64, 1);
  PMCloseScanner();
  AnswerIdentification(Identity());
  REQUIRE(OpenSet() == 1);
  CheckLines(640, 65280, 101);
}

TEST_CASE_FIXTURE(Receiver, "standard: without memory for a fresh buffer it is as without asking") {
  static int refusals;
  refusals = 1;
  system.takeHeapBlock = [](std::size_t bytes) -> std::uint8_t* {
    return refusals-- > 0 ? nullptr : static_cast<std::uint8_t*>(std::calloc(bytes, 1));
  };
  system.giveHeapBlock = [](std::uint8_t* block) { std::free(block); };
  CheckLines(640, 1280, 2, kFresh);
}

TEST_CASE_FIXTURE(Receiver, "standard: a line beyond 16 million bytes is code 16") {
  CheckLines(0x1000000, 64, 1);
  settings.areaWidthPx = 0x1000001;
  InitAcquire();
  CheckAcquireFails(64, 16);
}

}  // namespace
}  // namespace pmddb832::tests::standard
