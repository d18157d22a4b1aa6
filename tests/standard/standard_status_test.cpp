#include "tests/standard/standard_fixture.h"

// Queries of the status, the option unit and the document's size.

namespace pmddb832::tests::standard {
namespace {

constexpr std::uint32_t kFeeder = 0;
constexpr std::uint32_t kUnit = 1;
constexpr std::uint32_t kFlatbed = 2;

std::uint32_t OptionStatus(std::uint32_t option, const Bytes& status, std::uint8_t header = 0) {
  StandardScanner scanner("B4");
  scanner.Answer('f', {status, header});
  return PMGetOptionStatus(option);
}

struct Size {
  std::uint32_t width = kUnwritten;
  std::uint32_t height = kUnwritten;
  bool operator==(const Size&) const = default;
};

Size PaperSize(StandardScanner& scanner, std::uint32_t option, const Bytes& status) {
  scanner.AnswerStatus(status);
  Size size;
  CHECK(PMGetScanPaperSize(option, &size.width, &size.height) == 0);
  return size;
}

TEST_CASE("standard: the worst of a feeder's conditions is reported") {
  CHECK(OptionStatus(kFeeder, Status(0, 0x4E)) == 15);
  CHECK(OptionStatus(kFeeder, Status(0, 0x4C)) == 14);
  CHECK(OptionStatus(kFeeder, Status(0, 0x48)) == 13);
  CHECK(OptionStatus(kFeeder, Status(0, 0x42)) == 15);
}

TEST_CASE("standard: a feeder's error summary alone is no error, whatever else is set") {
  CHECK(OptionStatus(kFeeder, Status(0x80, 0x40), 0x80) == 0);
}

TEST_CASE("standard: without its summary a feeder's conditions do not count") {
  CHECK(OptionStatus(kFeeder, Status(0, 0x8E)) == 0);
  CHECK(OptionStatus(kFeeder, Status(0x80, 0x0E)) == 22);
}

TEST_CASE("standard: a transparency unit knows one condition") {
  CHECK(OptionStatus(kUnit, Status(0, 0, 0x42)) == 15);
  CHECK(OptionStatus(kUnit, Status(0x80, 0, 0x4C), 0x80) == 0);
  CHECK(OptionStatus(kUnit, Status(0, 0, 0x02)) == 0);
  CHECK(OptionStatus(kUnit, Status(0x80, 0x4E, 0x02)) == 22);
}

TEST_CASE("standard: a scanner error is bit 7 of the header's or of the main status") {
  CHECK(OptionStatus(kFlatbed, Status(0x80)) == 22);
  CHECK(OptionStatus(kFlatbed, Status(0), 0x80) == 22);
  CHECK(OptionStatus(kFlatbed, Status(0x7F, 0x4E, 0x42), 0x7F) == 0);
}

TEST_CASE("standard: an option that is not known is always ready") {
  CHECK(OptionStatus(3, Status(0x80, 0x4E, 0x42), 0x80) == 0);
  CHECK(OptionStatus(0xFFFFFFFF, Status(0x80), 0x80) == 0);
}

TEST_CASE_FIXTURE(OpenB4, "standard: the option query clears the code before it") {
  settings.areaWidthPx = 0;
  InitAcquire();
  AnswerStatus(Status(0x80));
  CHECK(PMGetOptionStatus(kFlatbed) == 22);
  CHECK(PMGetScanError() == 0);
}

TEST_CASE_FIXTURE(OpenB4, "standard: the main status is handed out where it is asked for") {
  std::uint8_t main = 0;
  AnswerStatus(Status(0x85));
  CHECK(SetStatus(&main, 3) == 0);
  CHECK(main == 0x85);
  device.FailNextWrite();
  CHECK(SetStatus(&main, 3) == 7);
  CHECK(main == 0x85);
}

TEST_CASE_FIXTURE(OpenB3, "standard: level B3 sends no status query and is always ready") {
  for (const std::uint32_t option : {kFeeder, kUnit, kFlatbed, 3u}) {
    CHECK(PMGetOptionStatus(option) == 0);
  }
}

TEST_CASE("standard: an unreadable status is code 7 to both queries") {
  for (const std::string_view answer :
       {">!", "> 1B 66 <!", "> 1B 66 < 15 00 0B 00", "> 1B 66 < 02 00 93 00",
        "> 1B 66 < 02 00 FF FF", "> 1B 66 < 02 00 0B 00 <!"}) {
    CAPTURE(answer);
    StandardScanner scanner("B4");
    scanner.device.Converse(answer).Converse(answer);
    CHECK(PMGetOptionStatus(kFlatbed) == 7);
    Size size;
    CHECK(PMGetScanPaperSize(kFlatbed, &size.width, &size.height) == 7);
    CHECK(size == Size{});
  }
}

TEST_CASE_FIXTURE(OpenB4, "standard: the feeder's page is what the status says of it") {
  CHECK(PaperSize(*this, kFeeder, Status(0, 0x40)) == Size{800, 1300});
}

TEST_CASE_FIXTURE(OpenB4, "standard: the feeder's page is the option area from then on") {
  PaperSize(*this, kFeeder, Status(0, 0x40));
  CHECK(PaperSize(*this, 3, Status()) == Size{800, 1300});
  Set("scanSource=2 areaWidthPx=1000");
  Upload(UploadOf("B4", "A 00 00 00 00 20 03 04 00"));
}

TEST_CASE_FIXTURE(
    OpenB4, "standard: the transparency unit's area is what the status says, and is not kept") {
  CHECK(PaperSize(*this, kUnit, Status(0, 0, 0x40)) == Size{400, 500});
  CHECK(PaperSize(*this, kFeeder, Status(0, 0, 0x40)) == Size{400, 500});
  CHECK(PaperSize(*this, kUnit, Status()) == Size{0, 0});
}

TEST_CASE_FIXTURE(OpenFeederB4,
                  "standard: option 2 is the flatbed, any other one the option unit's area") {
  CHECK(PaperSize(*this, kFlatbed, Status(0, 0x40, 0x40)) == Size{1000, 1400});
  CHECK(PaperSize(*this, 3, Status(0, 0x40, 0x40)) == Size{800, 1300});
  CHECK(PaperSize(*this, kFeeder, Status()) == Size{800, 1300});
  CHECK(PaperSize(*this, kUnit, Status()) == Size{800, 1300});
}

TEST_CASE_FIXTURE(StandardScanner, "standard: a quirk doubles the sizes in pixels") {
  REQUIRE(Open(Identity(), Status(), Product("Prospectra900   ")) == 1);
  CHECK(PaperSize(*this, kFeeder, Status(0, 0x40)) == Size{1600, 2600});
  CHECK(PaperSize(*this, kUnit, Status(0, 0, 0x40)) == Size{800, 1000});
  CHECK(PaperSize(*this, 3, Status()) == Size{1600, 2600});
  CHECK(PaperSize(*this, kFlatbed, Status()) == Size{2000, 2800});
}

TEST_CASE_FIXTURE(
    StandardScanner,
    "standard: the doubled size of the feeder's page is what uploads are limited to") {
  REQUIRE(Open(Identity(), Status(), Product("Prospectra900   ")) == 1);
  PaperSize(*this, kFeeder, Status(0, 0x40));
  for (const std::uint8_t source : Bytes{1, 2}) {
    CAPTURE(source);
    settings.scanSource = source;
    settings.areaWidthPx = 1000;
    Upload(UploadOf("B4", "A 00 00 00 00 20 03 04 00"));  // 1600 of 400 dpi, at 200
  }
}

TEST_CASE_FIXTURE(OpenB3, "standard: at level B3 the paper size is what is known") {
  Size size;
  CHECK(PMGetScanPaperSize(kFlatbed, &size.width, &size.height) == 0);
  CHECK(size == Size{1000, 1400});
  CHECK(PMGetScanPaperSize(kFeeder, &size.width, &size.height) == 0);
  CHECK(size == Size{0, 0});
}

TEST_CASE_FIXTURE(OpenB4, "standard: the paper size leaves the code before it") {
  settings.areaWidthPx = 0;
  InitAcquire();
  PaperSize(*this, kFlatbed, Status());
  CHECK(PMGetScanError() == 1);
}

TEST_CASE_FIXTURE(
    OpenB4, "standard: a transparency unit is switched with 0 and 1, a feeder with any value") {
  const auto enable = [this](std::uint32_t option, std::uint32_t value, std::uint8_t sent) {
    settings.docFeedOption = option;
    device.ExpectBlock(0x1B, 'e', {sent});
    CHECK(PMEnableOption(value) == 1);
  };
  enable(kUnit, 2, 1);
  enable(kUnit, 0x100, 1);
  enable(kUnit, 0, 0);
  enable(kFeeder, 2, 2);
  enable(kFlatbed, 0x103, 3);
}

TEST_CASE_FIXTURE(OpenB4, "standard: switching an option fails without either acknowledge") {
  device.Converse("> 1B 65 < 15 > 1B 65 < 06 > 01 < 15");
  CHECK(PMEnableOption(1) == 0);
  CHECK(PMEnableOption(1) == 0);
}

}  // namespace
}  // namespace pmddb832::tests::standard
