#include "tests/extended/extended_fixture.h"

namespace pmddb832::tests::extended {
namespace {

// One line of a scan: what is asked for, what the scanner sends, and the row that the host must
// have. A5 are bytes of the row that no pixel reaches.
struct RowCase {
  std::uint32_t pixelType;
  std::uint32_t hostPixelType;
  const char* modeAndBits;
  std::uint32_t width, sentWidth;
  Bytes raw;
  const char* row;
};

struct RowScanner : ExtendedScanner {
  explicit RowScanner(std::string_view productName = "X") {
    REQUIRE(Open(With(Identity(), 46, Text(productName))) == 1);
    settings.areaHeightPx = 1;
  }

  void Check(const RowCase& line) {
    CAPTURE(line.pixelType);
    CAPTURE(line.hostPixelType);
    settings.pixelType = line.pixelType;
    settings.areaWidthPx = line.width;
    const auto left = static_cast<std::uint32_t>(settings.originX);
    const Bytes area = Word(left) + Word(0) + Word(line.sentWidth) + Word(1);
    StartScan(With(With(ParameterBlock(), 8, area), 24, FromHex(line.modeAndBits)),
              Header(0, 0, static_cast<std::uint32_t>(line.raw.size())), line.hostPixelType);
    SendLastBlock(line.raw);
    CHECK(Acquire(FromHex(line.row).size()).Hex() == line.row);
  }
};

TEST_CASE_FIXTURE(RowScanner, "line art is copied") {
  Check({0, 0, "00 01", 12, 16, FromHex("F0 A0"), "F0 A0 A5 A5"});
}

TEST_CASE_FIXTURE(RowScanner, "line art is inverted for any nonzero invert flag") {
  settings.invertMono = 0x80;
  Check({0, 0, "00 01", 12, 16, FromHex("F0 A0"), "0F 5F A5 A5"});
}

TEST_CASE_FIXTURE(RowScanner, "grey is copied") {
  Check({2, 2, "00 08", 5, 5, FromHex("00 0B FF 80 7F"), "00 0B FF 80 7F A5 A5 A5"});
}

TEST_CASE_FIXTURE(RowScanner, "grey of a preview is darkened") {
  settings.previewMode = 1;
  Check({2, 2, "00 08", 5, 5, FromHex("00 0B FF FE 0A"), "00 0A EA E7 0A A5 A5 A5"});
}

TEST_CASE_FIXTURE(RowScanner, "true colour is copied whatever the host's pixel type") {
  Check({5, 5, "23 08", 2, 2, FromHex("01 02 03 04 05 06"), "01 02 03 04 05 06 A5 A5"});
  Check({5, 1, "13 08", 2, 2, FromHex("01 02 03 04 05 06"), "01 02 03 04 05 06 A5 A5"});
}

TEST_CASE_FIXTURE(RowScanner, "12-bit colour is unpacked into two bytes a pixel") {
  Check({6, 6, "13 04", 2, 8, FromHex("12 34 56") + Fill(13, 0xEE), "05 31 06 42"});
}

TEST_CASE_FIXTURE(RowScanner, "deep colour is reordered but for the host's pixel type 1") {
  const Bytes raw = FromHex("01 02 03 04 05 06");
  Check({7, 7, "13 0C", 1, 1, raw, "05 06 03 04 01 02 A5 A5"});
  Check({7, 5, "13 0C", 1, 1, raw, "05 06 03 04 01 02 A5 A5"});
  Check({7, 1, "13 0C", 1, 1, raw, "01 02 03 04 05 06 A5 A5"});
}

TEST_CASE_FIXTURE(RowScanner, "deep grey is copied in two bytes a pixel") {
  Check({8, 8, "00 0C", 3, 3, FromHex("01 02 03 04 05 06"), "01 02 03 04 05 06 A5 A5"});
}

TEST_CASE_FIXTURE(RowScanner, "pixels beyond the area repeat the last one") {
  settings.originX = 997;
  Check({2, 2, "00 08", 5, 3, FromHex("07 08 09"), "07 08 09 09 09 A5 A5 A5"});
  Check({5, 5, "23 08", 4, 3, FromHex("01 02 03 04 05 06 07 08 09"),
         "01 02 03 04 05 06 07 08 09 07 08 09"});
  Check({7, 1, "13 0C", 4, 3, Ramp(1, 18),
         "01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 0D 0E 0F 10 11 12"});
  Check({8, 8, "00 0C", 4, 3, Ramp(1, 6), "01 02 03 04 05 06 05 06"});
}

TEST_CASE_FIXTURE(RowScanner, "line art beyond the area repeats the last byte as it was read") {
  Set("originX=984 invertMono=1");
  Check({0, 0, "00 01", 25, 16, FromHex("F0 A0"), "0F 5F A0 A0"});
}

TEST_CASE_FIXTURE(RowScanner, "line art of 1001 pixels on a flatbed of 1000 gets one byte of pad") {
  Set("pixelType=0 areaWidthPx=1001");
  const Bytes area = Word(0) + Word(0) + Word(1000) + Word(1);
  StartScan(With(ParameterBlock(), 8, area + Bytes{0x00, 0x01}), Header(0, 0, 125), 0);
  SendLastBlock(Ramp(1, 125));
  CHECK(Acquire(128).image == Ramp(1, 125) + FromHex("7D A5 A5"));
}

TEST_CASE_FIXTURE(RowScanner, "the deep types are padded behind what their conversion made") {
  settings.originX = 997;
  Check({7, 7, "13 0C", 4, 3, Ramp(1, 18),
         "05 06 03 04 01 02 0B 0C 09 0A 07 08 11 12 0F 10 0D 0E 11 12 0F 10 0D 0E"});
}

TEST_CASE_FIXTURE(RowScanner, "12-bit colour beyond the area repeats the last pixel") {
  settings.originX = 992;
  Check({6, 6, "13 04", 10, 8, Fill(12, 0x12) + Fill(4, 0),
         "01 11 02 22 01 11 02 22 01 11 02 22 01 11 02 22 02 22 02 22"});
}

TEST_CASE("pixels beyond a feeder's area are white when all three settings ask for it") {
  struct Row {
    std::uint32_t docFeedOption;
    std::uint8_t mainStatusBit5;
    std::uint16_t whitePadding;
    const char* row;
  };
  for (const Row& row :
       {Row{0, 1, 1, "07 08 09 FF FF A5 A5 A5"}, Row{0, 1, 0x100, "07 08 09 FF FF A5 A5 A5"},
        Row{0, 1, 0, "07 08 09 09 09 A5 A5 A5"}, Row{0, 0, 1, "07 08 09 09 09 A5 A5 A5"},
        Row{1, 1, 1, "07 08 09 09 09 A5 A5 A5"}}) {
    CAPTURE(row.row);
    RowScanner scanner;
    scanner.settings.originX = 997;
    scanner.settings.docFeedOption = row.docFeedOption;
    scanner.settings.mainStatusBit5 = row.mainStatusBit5;
    scanner.settings.whitePadding = row.whitePadding;
    scanner.Check({2, 2, "00 08", 5, 3, FromHex("07 08 09"), row.row});
  }
}

TEST_CASE_FIXTURE(RowScanner, "white pixels beyond a feeder's area are white in each pixel type") {
  Set("docFeedOption=0 mainStatusBit5=1 whitePadding=1 originX=997");
  Check({5, 5, "23 08", 4, 3, Ramp(1, 9), "01 02 03 04 05 06 07 08 09 FF FF FF"});
  Check({7, 1, "13 0C", 2, 2, Ramp(1, 12), "01 02 03 04 05 06 07 08 09 0A 0B 0C"});
  Check({8, 8, "00 0C", 4, 3, Ramp(1, 6), "01 02 03 04 05 06 FF FF"});
  settings.originX = 999;
  Check({7, 7, "13 0C", 2, 1, Ramp(1, 6), "05 06 03 04 01 02 FF FF FF FF FF FF"});
  settings.originX = 984;
  Check({0, 0, "00 01", 25, 16, FromHex("F0 A0"), "F0 A0 FF FF"});
  settings.originX = 992;
  Check({6, 6, "13 04", 10, 8, Fill(16, 0x12),
         "01 11 02 22 01 11 02 22 01 11 02 22 01 11 02 22 FF FF FF FF"});
}

}  // namespace
}  // namespace pmddb832::tests::extended
