#include <doctest/doctest.h>

#include <stdexcept>

#include "simulator/catalog/catalog.h"
#include "tests/simulator/simulator_conversation.h"

// Scanners by name.

using namespace simulator_test;
using simulator::MakeScanner;

namespace {

std::string ProductName(std::string_view name) {
  const bool extended = name.starts_with("extended");
  const auto scanner = MakeScanner(name, Pattern(4, 4));
  Conversation talk(*scanner);
  talk.Send(extended ? "1C 49" : "1B 3F");
  const Bytes reply = talk.Read(extended ? 80 : 28);
  const std::ptrdiff_t offset = extended ? 46 : 12;
  return std::string(reply.begin() + offset, reply.begin() + offset + 16);
}

std::uint8_t FeederStatus(std::string_view name) {
  const auto scanner = MakeScanner(name, Pattern(4, 4));
  Conversation talk(*scanner);
  talk.Send("1C 46");
  return talk.Read(16)[1];
}

void CheckThrows(std::string_view name, const char* words) {
  CHECK_THROWS_WITH_AS(MakeScanner(name, {}), doctest::Contains(words), std::invalid_argument);
}

}  // namespace

TEST_CASE("simulator: every listed name makes a scanner that identifies itself") {
  CHECK(simulator::ScannerNames().size() == 23 + 27);
  for (const std::string& name : simulator::ScannerNames()) {
    INFO(name);
    const std::string product = ProductName(name);
    CHECK((product.starts_with("SCANNER ") || product.starts_with("Prospectra")));
  }
}

TEST_CASE("simulator: a model is chosen behind the colon") {
  CHECK(ProductName("extended") == "SCANNER QM-2700 ");
  CHECK(ProductName("extended:RV7000H") == "SCANNER RV-7000H");
}

TEST_CASE("simulator: the standard family has every model, and more of its own") {
  CHECK(ProductName("standard") == "SCANNER QM-43000");
  CHECK(ProductName("standard:RV3000") == "SCANNER RV-3000 ");
  CHECK(ProductName("standard:PS936XL") == "Prospectra936XL ");
  CHECK(ProductName("standard:PS900") == "Prospectra900   ");
  CHECK(ProductName("standard:PS3100") == "Prospectra3100  ");
  CHECK(ProductName("standard:HK300") == "SCANNER HK-300  ");
}

TEST_CASE("simulator: a model that lists half of what it can scans twice as finely") {
  const auto scanner = MakeScanner("standard:QM2700", Pattern(4, 4));
  Conversation talk(*scanner);
  talk.Send("1B 49");
  talk.Expect("02 00 25 00 42 38");
  const Bytes rest = talk.Read(35);
  CHECK(ToHex({rest.end() - 8, rest.end()}) == "52 B0 04 41 D8 27 D8 36");  // 1200 dpi
  Converse(*scanner, "+ R 60 09 60 09");
}

TEST_CASE("simulator: a model with a feeder has one page in it, or as many as the name says") {
  CHECK(FeederStatus("extended:RV7000H") == 0x80);
  CHECK(FeederStatus("extended:RV7000H+pages=0") == 0xC8);
  CHECK(FeederStatus("extended:RV7000H+pages=2") == 0x80);
  CHECK(FeederStatus("extended:QM2700+pages=2") == 0);
}

TEST_CASE("simulator: defects are switched on behind a plus") {
  const auto scanner = MakeScanner("extended:QM5500+fatal-error+warm-up=3", {});
  Converse(*scanner, "> 1C 46 < 82 80");
}

TEST_CASE("simulator: family and model are found in any case") {
  CHECK(ProductName("extended:rv7000h") == "SCANNER RV-7000H");
  CHECK(FeederStatus("Extended:Rv7000h+pages=0") == 0xC8);
  CHECK(simulator::ModelIdOf("Extended:rv7000h+pages=3") == "RV7000H");
  CHECK(simulator::ModelIdOf("extended+pages=3").empty());
  CHECK(simulator::ModelIdOf("extended:QM1").empty());
}

TEST_CASE("simulator: an unknown name is an error that says what was meant, not all there is") {
  CheckThrows("", "no scanner is named \"\"; a name is \"extended\" or \"standard\", or one of");
  CheckThrows("extendet", "no scanner is named \"extendet\"; did you mean \"extended\"?");
  CheckThrows("extended:", "no scanner is named \"extended:\"");
  CheckThrows("extended:QM270", "\"extended:QM270\"; did you mean \"extended:QM2700\"?");
  CheckThrows("extended:QM2500+page=3", "no defect is named \"page\"; did you mean \"pages\"?");
  CheckThrows("extended:RV3000", "no scanner is named \"extended:RV3000\"");
  CheckThrows("standard:", "no scanner is named \"standard:\"");
  CheckThrows("extended+rust", "no defect is named \"rust\"");
  CheckThrows("extended+pages=many", "pages is a number");
}
