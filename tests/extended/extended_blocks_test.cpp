#include "tests/extended/extended_fixture.h"

namespace pmddb832::tests::extended {
namespace {

constexpr std::size_t kLine = 16000;  // bytes of a wide line; a block holds four

Bytes Lines(std::initializer_list<std::uint8_t> values) {
  Bytes bytes;
  for (const std::uint8_t value : values) bytes = std::move(bytes) + WideLine(value);
  return bytes;
}

// An open scanner that has started a transfer of wide lines, delivered from the top.
struct BlockScanner : ExtendedScanner {
  explicit BlockScanner(std::uint8_t lines = 10) : BlockScanner(lines, Header(64000, 2, 32000)) {}
  BlockScanner(std::uint8_t lines, const Bytes& header) {
    REQUIRE(Open() == 1);
    const Bytes parameters = AskForWideLines(lines);
    StartScan(parameters, header, 1);
  }
};

TEST_CASE_FIXTURE(BlockScanner, "each full block is answered with ACK, the last one is not") {
  device.Reply(Lines({1, 2, 3, 4}) + Bytes{0x00}).Expect({0x06});
  device.Reply(Lines({5, 6, 7, 8}) + Bytes{0x00}).Expect({0x06});
  device.Reply(Lines({9, 10}) + Bytes{0x00});
  const Band band = Acquire(10 * kLine);
  CHECK(band.record.status == kGoOn);
  CHECK(band.Rows(kLine) == "01 02 03 04 05 06 07 08 09 0A");
}

TEST_CASE_FIXTURE(BlockScanner, "a block is read when its first line is due, in whichever band") {
  SendBlock(Lines({1, 2, 3, 4}));
  CHECK(Acquire(3 * kLine).Rows(kLine) == "01 02 03");
  CHECK(Acquire(1 * kLine).Rows(kLine) == "04");
  CHECK(device.Verdict() == "as scripted");
  SendBlock(Lines({5, 6, 7, 8}));
  CHECK(Acquire(2 * kLine).Rows(kLine) == "05 06");
  SendLastBlock(Lines({9, 10}));
  CHECK(Acquire(9 * kLine).record.lines == 4);
}

TEST_CASE("of a block's status byte only bit 7 counts") {
  for (const int status : {0x01, 0x40, 0x7F}) {
    CAPTURE(status);
    BlockScanner scanner(4, Header(64000, 1, 0));
    scanner.device.Reply(Lines({1, 2, 3, 4}) + Bytes{static_cast<std::uint8_t>(status)});
    scanner.device.Expect({0x06});
    CHECK(scanner.Acquire(4 * kLine).record.done == 1);
  }
}

TEST_CASE("a block with an error is not answered; the option's condition is the code, 9 for 22") {
  struct Row {
    std::uint32_t docFeedOption;
    Bytes status;
    std::uint32_t code;
  };
  for (const bool last : {false, true}) {
    for (const Row& row :
         {Row{2, Status(), 0}, Row{2, Status(0x80), 9}, Row{2, Status(0x40), 31},
          Row{2, Status(0, 0x42), 0}, Row{0, Status(0, 0x42), 15}, Row{0, Status(0, 0x44), 14},
          Row{0, Status(0, 0x48), 13}, Row{1, Status(0, 0, 0x42), 15}}) {
      CAPTURE(last);
      CAPTURE(row.code);
      BlockScanner scanner(4, last ? Header(64000, 0, 64000) : Header(64000, 1, 0));
      scanner.settings.docFeedOption = row.docFeedOption;
      scanner.device.Reply(Lines({1, 2, 3, 4}) + Bytes{0x80});
      scanner.AnswerStatus(row.status);
      CHECK(scanner.Acquire(4 * kLine).record.status == kFailed);
      CHECK(PMGetScanError() == row.code);
    }
  }
}

TEST_CASE("a block with an error whose cause cannot be read is 7") {
  for (const bool write : {false, true}) {
    CAPTURE(write);
    BlockScanner scanner;
    scanner.device.Reply(Lines({1, 2, 3, 4}) + Bytes{0xFF});
    if (write) scanner.device.FailNextWrite();
    if (!write) scanner.device.Expect({0x1C, 0x46}).FailNextRead();
    scanner.CheckAcquireFails(4 * kLine, 7);
  }
}

TEST_CASE_FIXTURE(BlockScanner,
                  "a full block that cannot be read is 9, and is read by the next call") {
  device.FailNextRead();
  CheckAcquireFails(10 * kLine, 9);
  SendBlock(Lines({1, 2, 3, 4}));
  CHECK(Acquire(4 * kLine).Rows(kLine) == "01 02 03 04");
  CHECK(PMGetScanError() == 0);
}

TEST_CASE_FIXTURE(BlockScanner,
                  "an ACK that cannot be written is 9, and the block does not count") {
  device.Reply(Lines({1, 2, 3, 4}) + Bytes{0x00}).FailNextWrite();
  CheckAcquireFails(10 * kLine, 9);
  SendBlock(Lines({1, 2, 3, 4}));
  SendBlock(Lines({5, 6, 7, 8}));
  SendLastBlock(Lines({9, 10}));
  CHECK(Acquire(10 * kLine).record.done == 1);
}

TEST_CASE("a last block that cannot be read is 9, and is read by the next call") {
  BlockScanner scanner(4, Header(64000, 0, 64000));
  scanner.device.FailNextRead();
  scanner.CheckAcquireFails(4 * kLine, 9);
  scanner.SendLastBlock(Lines({1, 2, 3, 4}));
  CHECK(scanner.Acquire(4 * kLine).Rows(kLine) == "01 02 03 04");
}

TEST_CASE_FIXTURE(BlockScanner,
                  "a failure behind the first block leaves its rows, lines and no more") {
  SendBlock(Lines({1, 2, 3, 4}));
  device.FailNextRead();
  const Band band = Acquire(6 * kLine);
  CHECK(band.recordBytes == "02 00 00 00 A5 A5 A5 A5 A5 A5 A5 A5 06 00 00 00 A5 A5 A5 A5");
  CHECK(band.Rows(kLine) == "01 02 03 04 A5 A5");
}

TEST_CASE("full blocks beyond the host's lines are left with the scanner") {
  BlockScanner scanner(4, Header(64000, 5, 64000));
  scanner.SendBlock(Lines({1, 2, 3, 4}));
  CHECK(scanner.Acquire(4 * kLine).record.done == 1);
}

TEST_CASE("after the last block nothing is read: further lines are those of the buffer") {
  BlockScanner scanner(6, Header(64000, 0, 64000));
  scanner.SendLastBlock(Lines({1, 2, 3, 4}));
  const Band band = scanner.Acquire(6 * kLine);
  CHECK(band.record.status == kGoOn);
  CHECK(band.Rows(kLine) == "01 02 03 04 01 02");
}

TEST_CASE("lines follow each other by the raw line, whatever the size of the block") {
  BlockScanner scanner(8, Header(64010, 1, 64001));
  scanner.SendBlock(Lines({1, 2, 3, 4}) + Fill(10, 0x77));
  scanner.SendLastBlock(Lines({5, 6, 7, 8}) + Fill(1, 0x77));
  CHECK(scanner.Acquire(8 * kLine).Rows(kLine) == "01 02 03 04 05 06 07 08");
}

TEST_CASE("a raw line of a rounded width is longer than the host's pixels") {
  ExtendedScanner scanner;
  REQUIRE(scanner.Open(With(Identity(), 46, Text("Prospectra3140XL"))) == 1);
  scanner.settings.pixelType = 8;
  scanner.settings.areaWidthPx = 3;  // 8 are sent
  scanner.settings.areaHeightPx = 2;
  const Bytes block = With(ParameterBlock(), 16, Word(8) + Word(2));
  scanner.StartScan(With(block, 25, {0x0E}), Header(0, 0, 32), 1);
  scanner.SendLastBlock(Ramp(0, 32));
  CHECK(scanner.Acquire(16).Hex() == "00 01 02 03 04 05 A5 A5 10 11 12 13 14 15 A5 A5");
}

}  // namespace
}  // namespace pmddb832::tests::extended
