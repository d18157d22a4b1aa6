#include "tests/extended/extended_fixture.h"

// A read that failed brought nothing, whatever the buffer holds: a good reply from before, or one
// that the failing read itself delivered.

namespace pmddb832::tests::extended {
namespace {

// The default scan, about to be started for the second time: the first one was good.
struct SecondScan : ExtendedScanner {
  SecondScan() {
    REQUIRE(Open() == 1);
    REQUIRE(ScanPage().record.done == 1);
    InitAcquire();
  }
};

TEST_CASE_FIXTURE(SecondScan, "a transfer header that was not read is not the one from before") {
  AcceptParameters();
  AnswerStatus();
  device.Expect({0x1C, 0x47}).FailNextRead();
  AnswerStatus();
  CheckAcquireFails(64, 22);
}

TEST_CASE_FIXTURE(SecondScan, "a transfer header whose read failed is not taken") {
  AcceptParameters();
  AnswerStatus();
  device.Expect({0x1C, 0x47}).FailNextRead(Header(0, 0, 64));
  AnswerStatus();
  CheckAcquireFails(64, 22);
}

TEST_CASE_FIXTURE(SecondScan, "a status that was not read is not the one from before") {
  AcceptParameters();
  device.Expect({0x1C, 0x46}).FailNextRead();
  AnswerStatus();
  CheckAcquireFails(64, 22);
}

TEST_CASE_FIXTURE(SecondScan, "a status whose read failed is not taken") {
  AcceptParameters();
  device.Expect({0x1C, 0x46}).FailNextRead(Status());
  AnswerStatus();
  CheckAcquireFails(64, 22);
  device.Expect({0x1C, 0x46}).FailNextRead(Status());
  CHECK(PMGetOptionStatus(2) == 7);
}

TEST_CASE_FIXTURE(SecondScan, "an acknowledge whose read failed is none") {
  device.Expect({0x1C, 0x57}).FailNextRead({0x06});
  CheckAcquireFails(64, 22);
  device.Expect({0x1C, 0x57}).Reply({0x06}).Expect(ParameterBlock()).FailNextRead({0x06});
  CheckAcquireFails(64, 22);
  device.Expect({0x1B, 0x40}).FailNextRead({0x06});
  CHECK(PMReset() == 0);
}

TEST_CASE_FIXTURE(SecondScan, "a block whose read failed is read again") {
  AcceptParameters();
  AnswerStart(Header(0, 0, 64));
  device.FailNextRead(Fill(64, 7) + Bytes{0x00});
  CheckAcquireFails(64, 9);
  SendLastBlock(Fill(64, 1));
  CHECK(Acquire(64).Rows(16) == "01 01 01 01");
}

TEST_CASE_FIXTURE(ExtendedScanner, "an identity whose read failed is not taken") {
  AnswerProbe();
  AnswerReset();
  device.Expect({0x1C, 0x49}).FailNextRead(Identity());
  CHECK(PMOpenScanner(&settings) == 0);
  CHECK(settings.scanInfoVariant == 0);
}

TEST_CASE_FIXTURE(OpenExtended, "a paper size whose read failed leaves the area of the open") {
  settings.scanSource = 1;
  device.Expect({0x1C, 0x49}).FailNextRead(With(Identity(), 28, Word(12) + Word(2)));
  std::uint32_t width = kUnwritten;
  std::uint32_t height = kUnwritten;
  CHECK(PMGetScanPaperSize(0, &width, &height) == 7);
  CHECK(width == kUnwritten);
}

TEST_CASE_FIXTURE(OpenExtended, "a focus position whose reads failed is unknown") {
  for (const bool headerFails : {true, false}) {
    CAPTURE(headerFails);
    AcceptParameters();
    device.ExpectBlock(0x1B, 'p', {0xFF}).Expect({0x1B, 0x71});
    if (headerFails) device.FailNextRead({0x02, 0x00, 0x02, 0x00});
    if (!headerFails) device.Reply({0x02, 0x00, 0x02, 0x00}).FailNextRead({0x00, 0x4A});
    CHECK(PMSetFocus(1, 0) == 156);
  }
}

}  // namespace
}  // namespace pmddb832::tests::extended
