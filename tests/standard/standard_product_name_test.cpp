#include <cstring>

#include "tests/standard/standard_fixture.h"

// The reply to ESC "?", the host's model id, and the model name that comes of them.

namespace pmddb832::tests::standard {
namespace {

void SetModelId(ScannerSettings& settings, std::string_view id) {
  std::memset(settings.modelId, 0, sizeof settings.modelId);
  std::memcpy(settings.modelId, id.data(), id.size());
}

std::string ModelNameFor(std::string_view modelId, std::string_view productName) {
  StandardScanner scanner;
  SetModelId(scanner.settings, modelId);
  REQUIRE(scanner.Open(Identity(), Status(), Product(productName)) == 1);
  return scanner.settings.modelName;
}

// An open with a first product query that fails in the scripted way.
void OpenWithFailingQuery(StandardScanner& scanner, const std::function<void()>& script) {
  scanner.AnswerProbe();
  scanner.AnswerReset();
  script();
  scanner.Answer('I', {Identity()});
  scanner.AnswerStatus();
  scanner.Answer('?', {Product("SCANNER QM-2700 ")});
  CHECK(PMOpenScanner(&scanner.settings) == 1);
}

TEST_CASE("standard: a listed model id is the model's name, whatever the scanner says") {
  for (const char* id : {"QM43000", "QM2700",  "QM1000",  "QM2500", "QM5500", "QM6500", "RV5000",
                         "QM5700",  "QM1700",  "QM1600",  "QM8700", "QM3200", "QM8600", "RV3100",
                         "QM41000", "RV7000H", "RV6000H", "RV5200", "WX4500", "WX4000", "HK300"}) {
    CHECK(ModelNameFor(id, "SCANNER RV-5000 ") == id);
  }
}

TEST_CASE("standard: model id QM6000 is reported as QM60000") {
  CHECK(ModelNameFor("QM6000", "SCANNER QM-6000 ") == "QM60000");
}

TEST_CASE("standard: a listed product name gives the model where the host names none") {
  CHECK(ModelNameFor("", "SCANNER RV-3000 ") == "QM43000");
  CHECK(ModelNameFor("", "SCANNER QM-43000") == "QM43000");
  CHECK(ModelNameFor("", "Prospectra936XL ") == "QM43000");
  CHECK(ModelNameFor("", "SCANNER QM-2700 ") == "QM2700");
  CHECK(ModelNameFor("", "Prospectra900   ") == "QM2700");
  CHECK(ModelNameFor("", "SCANNER RV-5000 ") == "RV5000");
  CHECK(ModelNameFor("", "Prospectra3100  ") == "RV5000");
}

TEST_CASE("standard: a listed product name comes before a model id that is not listed") {
  CHECK(ModelNameFor("OTHER", "SCANNER QM-2700 ") == "QM2700");
}

TEST_CASE("standard: an unlisted model id is taken as it is where the product is not listed") {
  CHECK(ModelNameFor("OTHER", "SCANNER QM-8700 ") == "OTHER");
  CHECK(ModelNameFor("QM270", "SCANNER QM-2700") == "QM2700");  // padded with a blank
  CHECK(ModelNameFor("qm2700", "scanner qm-2700 ") == "qm2700");
}

TEST_CASE("standard: an unlisted model id of eight bytes is cut to seven and terminated") {
  CHECK(ModelNameFor("ABCDEFGH", "SCANNER QM-8700 ") == "ABCDEFG");
}

TEST_CASE("standard: without model id and listed product the model is ORVAN and two blanks") {
  CHECK(ModelNameFor("", "SCANNER QM-8700 ") == "ORVAN  ");
}

TEST_CASE_FIXTURE(StandardScanner,
                  "standard: the product name is stored with blanks up to 16 characters") {
  const Bytes name = Fill(8, 0) + Text("ABC") + Bytes{0x00} + Text("DEF");
  REQUIRE(Open(Identity(), Status(), name) == 1);
  CHECK(std::string(settings.productNameReply) == "ABC             ");
}

TEST_CASE_FIXTURE(StandardScanner, "standard: of a longer name 16 characters are stored") {
  REQUIRE(Open(Identity(), Status(), Product("ABCDEFGHIJKLMNOPQRST")) == 1);
  CHECK(std::string(settings.productNameReply) == "ABCDEFGHIJKLMNOP");
}

TEST_CASE_FIXTURE(StandardScanner, "standard: an empty product name stays empty") {
  REQUIRE(Open(Identity(), Status(), Fill(8, 0x41) + Fill(16, 0)) == 1);
  CHECK(settings.productNameReply[0] == '\0');
}

TEST_CASE("standard: a product reply that ends before the name has an empty one") {
  for (const std::size_t bytes : {0u, 7u, 8u}) {
    StandardScanner scanner;
    REQUIRE(scanner.Open(Identity(), Status(), Fill(bytes, 0x41)) == 1);
    CHECK(scanner.settings.productNameReply[0] == '\0');
    CHECK(std::string(scanner.settings.modelName) == "ORVAN  ");
  }
}

TEST_CASE_FIXTURE(StandardScanner, "standard: a failed product query is no error") {
  OpenWithFailingQuery(*this, [this] { device.Expect({0x1B, 0x3F}).FailNextRead(); });
  CHECK(PMGetScanError() == 0);
  CHECK(std::string(settings.modelName) == "QM2700");  // of the second query
}

TEST_CASE_FIXTURE(StandardScanner, "standard: a product query that cannot be sent reads nothing") {
  OpenWithFailingQuery(*this, [this] { device.FailNextWrite(); });
}

TEST_CASE_FIXTURE(StandardScanner, "standard: a product reply without STX leaves code 7") {
  OpenWithFailingQuery(*this, [this] { device.Expect({0x1B, 0x3F}).Reply({0x15, 0, 0x18, 0}); });
  CHECK(PMGetScanError() == 7);
}

TEST_CASE_FIXTURE(StandardScanner, "standard: a product reply beyond the buffer is not read") {
  OpenWithFailingQuery(*this, [this] { device.Expect({0x1B, 0x3F}).Reply({0x02, 0, 0x97, 0}); });
  CHECK(PMGetScanError() == 0);
}

TEST_CASE_FIXTURE(StandardScanner, "standard: a quirk found by the second query doubles nothing") {
  OpenWithFailingQuery(*this, [this] { device.Expect({0x1B, 0x3F}).FailNextRead(); });
  CheckSettings("baseResolution=100 bedWidth=1000");
}

TEST_CASE("standard: a quirk doubles the highest resolution and the areas, not the inches") {
  for (const char* name : {"SCANNER QM-2700 ", "Prospectra3100  "}) {
    StandardScanner scanner;
    REQUIRE(scanner.Open(Identity(), Status(0, 0x80), Product(name)) == 1);
    scanner.CheckSettings(
        "baseResolution=200 maxResolutionCopy=100 baseResolutionCopy=25 bedWidth=1000 "
        "bedHeight=1400 optionWidth=800");
  }
}

TEST_CASE("standard: products without a quirk keep their highest resolution") {
  for (const char* name : {"SCANNER RV-3000 ", "SCANNER QM-43000", "Prospectra936XL "}) {
    StandardScanner scanner;
    REQUIRE(scanner.Open(Identity(), Status(), Product(name)) == 1);
    CHECK(scanner.settings.baseResolution == 100);
  }
}

TEST_CASE_FIXTURE(StandardScanner, "standard: a listed model id has no quirk") {
  SetModelId(settings, "QM2700");
  REQUIRE(Open(Identity(), Status(), Product("SCANNER QM-2700 ")) == 1);
  CHECK(settings.baseResolution == 100);
}

}  // namespace
}  // namespace pmddb832::tests::standard
