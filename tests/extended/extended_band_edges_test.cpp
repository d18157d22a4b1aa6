#include "tests/extended/extended_fixture.h"

// What is in the rows where a focus, a failure or an abort comes between two bands.

namespace pmddb832::tests::extended {
namespace {

// A scan of eight wide lines, from the top, of a bed that is wider than any of them.
struct WideBed : ExtendedScanner {
  WideBed() {
    REQUIRE(Open(With(Identity(), 20, Word(40000))) == 1);
    parameters = AskForWideLines(8);
    StartScan(parameters, Header(64000, 1, 64000), 1);
    SendBlock(Fill(64000, 1));
  }

  // Automatic focus with these parameters.
  void Focus(const Bytes& sent) {
    AcceptParameters(sent);
    device.ExpectBlock(0x1B, 'p', {0xFF}).Expect({0x1B, 0x71});
    device.Reply({0x02, 0x00, 0x02, 0x00}).Reply({0x00, 0x41});
    CHECK(PMSetFocus(1, 0) == 1);
  }

  Bytes parameters;
};

TEST_CASE_FIXTURE(WideBed, "a white line that ends exactly at the data buffer's end is white") {
  REQUIRE(Acquire(3 * 16000).record.lines == 3);
  settings.areaWidthPx = 16640;  // 32000 + 2 * 16640 = 65280
  settings.originY = 1399.9375;  // one line is left of the area
  const Bytes area = Word(22399) + Word(16640) + Word(1);
  Focus(With(With(parameters, 12, area), 28, {2}));
  CHECK(Acquire(16000).Rows(16000) == "FF");
}

TEST_CASE_FIXTURE(WideBed,
                  "behind a block that failed, a focus leaves white rows, not older ones") {
  REQUIRE(Acquire(4 * 16000).record.lines == 4);
  device.FailNextRead();
  CheckAcquireFails(16000, 9);
  settings.areaWidthPx = 10872;  // six lines a block: the fifth is not the first of one
  Focus(With(With(parameters, 16, Word(10872)), 28, {6}));
  CHECK(Acquire(16000).Rows(16000) == "FF");
}

TEST_CASE_FIXTURE(ExtendedScanner, "a page that was aborted behind its last block is not ejected") {
  OpenFeeder();
  StartScan(With(ParameterBlock(), 26, {0x01}), Header(0, 0, 64), 1);
  SendLastBlock(Fill(64, 1));
  REQUIRE(Acquire(32).record.lines == 2);
  PMAbortScan();
  CHECK(Acquire(64).record.done == 1);
}

TEST_CASE("an eject that fails at the end of a page fails the page, whatever the feeder's kind") {
  for (const std::uint8_t flags : Bytes{0x00, 0x20, 0x28}) {
    CAPTURE(flags);
    ExtendedScanner scanner;
    scanner.OpenFeeder(flags);
    scanner.StartScan(With(ParameterBlock(), 26, {0x01}), Header(0, 0, 64));
    scanner.SendLastBlock(Fill(64, 1));
    if (flags == 0x28) scanner.AnswerStatus(Status(0, 0x48));  // the feeder is empty
    scanner.device.Expect({0x0C}).Reply({kNak});
    const Band band = scanner.Acquire(64);
    CHECK(band.record.status == kFailed);
    CHECK(band.record.done == 1);
    CHECK(PMGetScanError() == 0);
  }
}

TEST_CASE_FIXTURE(OpenExtended, "an abort before a transfer tells its failure") {
  InitAcquire();
  CHECK(AbortSet() == 0);
  CHECK(PMGetScanError() == 9);
}

TEST_CASE("a line of 0x7FF0 pixels is the widest, also behind a refused set-up") {
  for (const std::uint32_t width : {0x7FF0u, 0x7FF1u}) {
    ExtendedScanner scanner;
    REQUIRE(scanner.Open(With(Identity(), 20, Word(40000))) == 1);
    scanner.settings.pixelType = 0;
    scanner.settings.areaWidthPx = width;
    scanner.InitAcquire();
    const bool fits = width == 0x7FF0;
    CHECK(scanner.setup.status == (fits ? kGoOn : kFailed));
    CHECK(PMGetScanError() == (fits ? 0 : 35));
    if (fits) {
      const Bytes line = With(With(ParameterBlock(), 16, Word(width)), 25, {0x01});
      scanner.AcceptParameters(With(line, 28, {14}));
      scanner.AnswerStart(With(Header(0, 0, 0), 0, {kNak}));
      scanner.AnswerStatus();
    }
    scanner.CheckAcquireFails(0x10000, 22);
  }
}

}  // namespace
}  // namespace pmddb832::tests::extended
