#include "tests/standard/standard_fixture.h"

// A read that failed brought nothing, whatever the buffer holds: a good reply from before, or one
// that the failing read itself delivered.

namespace pmddb832::tests::standard {
namespace {

// The default scan, set up for the second time: the first one was good.
struct SecondScan : StandardScanner {
  SecondScan() : StandardScanner("B4") {
    REQUIRE(ScanPage().record.done == 1);
    InitAcquire(1);
  }

  // The second scan up to ESC G.
  void StartAgain() {
    AcceptUpload(UploadOf("B4"));
    device.ExpectBlock(0x1B, 'd', {0x04});
    AnswerStatus();
    device.Expect({0x1B, 0x47});
  }
};

TEST_CASE_FIXTURE(SecondScan, "standard: a first header that was not read is code 9") {
  StartAgain();
  device.FailNextRead();
  CheckAcquireFails(64, 9);
  StartAgain();
  device.FailNextRead(BlockHeader(0x20, 16, 4));
  CheckAcquireFails(64, 9);
}

TEST_CASE_FIXTURE(SecondScan, "standard: a block header whose read failed is not taken") {
  StartAgain();
  device.Reply(BlockHeader(0x00, 16, 1));
  SendLines(Fill(16, 1));
  device.FailNextRead(BlockHeader(0x20, 16, 3));
  CheckAcquireFails(64, 0);
}

TEST_CASE_FIXTURE(SecondScan, "standard: lines whose read failed are not delivered") {
  StartAgain();
  device.Reply(BlockHeader(0x20, 16, 4)).FailNextRead(Fill(64, 7));
  CheckAcquireFails(64, 0);
}

TEST_CASE_FIXTURE(SecondScan, "standard: a condition whose read failed ends the upload") {
  device.Expect({0x1B, 0x46}).FailNextRead({0x02, 0x00, 0x00, 0x00});
  device.ExpectBlock(0x1B, 'd', {0x04}).Unplug();
  CheckAcquireFails(64, 22);
}

TEST_CASE_FIXTURE(SecondScan, "standard: a status whose reads failed is unreadable") {
  device.Expect({0x1B, 0x66}).FailNextRead({0x02, 0x00, 0x0B, 0x00});
  CHECK(PMGetOptionStatus(2) == 7);
  device.Expect({0x1B, 0x66}).Reply({0x02, 0x00, 0x0B, 0x00}).FailNextRead(Status());
  CHECK(PMGetOptionStatus(2) == 7);
  AcceptUpload(UploadOf("B4"));
  device.ExpectBlock(0x1B, 'd', {0x04});
  device.Expect({0x1B, 0x66}).Reply({0x02, 0x00, 0x0B, 0x00}).FailNextRead(Status());
  CheckAcquireFails(64, 22);
}

TEST_CASE_FIXTURE(SecondScan, "standard: an acknowledge whose read failed is none") {
  device.Expect({0x1B, 0x65}).FailNextRead({0x06});
  CHECK(PMEnableOption(1) == 0);
  device.Expect({0x1B, 0x65}).Reply({0x06}).Expect({0x01}).FailNextRead({0x06});
  CHECK(PMEnableOption(1) == 0);
}

TEST_CASE("standard: an identity whose reads failed is code 1") {
  for (const bool headerFails : {true, false}) {
    CAPTURE(headerFails);
    StandardScanner scanner;
    scanner.AnswerProbe();
    scanner.AnswerReset();
    scanner.Answer('?', {Product()});
    scanner.device.Expect({0x1B, 0x49});
    const Bytes header = Reply{Identity()}.Header();
    if (headerFails) scanner.device.FailNextRead(header);
    if (!headerFails) scanner.device.Reply(header).FailNextRead(Identity());
    CHECK(PMOpenScanner(&scanner.settings) == 0);
    CHECK(PMGetScanError() == 1);
    CHECK(scanner.settings.scanInfoVariant == 0);
  }
}

TEST_CASE("standard: a product name whose reads failed is unknown") {
  for (const bool headerFails : {true, false}) {
    CAPTURE(headerFails);
    StandardScanner scanner;
    const Bytes product = Product("SCANNER QM-2700 ");
    const Bytes header = Reply{product}.Header();
    const auto failProduct = [&] {
      scanner.device.Expect({0x1B, 0x3F});
      if (headerFails) scanner.device.FailNextRead(header);
      if (!headerFails) scanner.device.Reply(header).FailNextRead(product);
    };
    scanner.AnswerProbe();
    scanner.AnswerReset();
    failProduct();
    scanner.Answer('I', {Identity()});
    scanner.AnswerStatus();
    failProduct();
    CHECK(PMOpenScanner(&scanner.settings) == 1);
    CHECK(std::string(scanner.settings.modelName) == "ORVAN  ");
    CHECK(scanner.settings.baseResolution == 100);  // not doubled
  }
}

}  // namespace
}  // namespace pmddb832::tests::standard
