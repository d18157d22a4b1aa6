#include "transport/model_names.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <cstring>
#include <initializer_list>

#include "tests/interface/module_fixture.h"

namespace pmddb832::tests {
namespace {

struct NamesFixture : ModuleFixture {
  // Bytes behind a terminating zero are not the id.
  void SetModelId(std::string_view id) {
    std::fill(std::begin(settings.modelId), std::end(settings.modelId), '#');
    std::copy(id.begin(), id.end(), settings.modelId);
    if (id.size() < sizeof(settings.modelId)) settings.modelId[id.size()] = '\0';
  }

  std::string ModelName() const {
    return Hex({std::begin(settings.modelName), std::end(settings.modelName)});
  }

  std::string ProductName() const {
    return {std::begin(settings.productNameReply), std::end(settings.productNameReply)};
  }
};

}  // namespace

TEST_CASE("every listed model is reported under its own id, but QM6000 as QM60000") {
  for (const std::string_view id :
       {"QM43000", "QM2700",  "QM1000",  "QM2500", "QM5500", "QM6500", "RV5000",
        "QM5700",  "QM1700",  "QM1600",  "QM8700", "QM3200", "QM8600", "RV3100",
        "QM41000", "RV7000H", "RV6000H", "RV5200", "WX4500", "WX4000", "HK300"}) {
    CAPTURE(id);
    CHECK(ListedModelName(id) == id);
  }
  CHECK(ListedModelName("QM6000") == "QM60000");
}

TEST_CASE("ids match as a whole and by case only") {
  for (const std::string_view id :
       {"", "qm2700", "QM270", "QM27000", "QM60000", " QM2700", "QM2700 ", "ORVAN  ", "X"}) {
    CAPTURE(id);
    CHECK(ListedModelName(id).empty());
  }
}

TEST_CASE_FIXTURE(NamesFixture,
                  "the host's model id ends at its zero, or at its eighth character") {
  SetModelId("");
  CHECK(HostModelId(settings) == "");
  SetModelId("RV3100");
  CHECK(HostModelId(settings) == "RV3100");
  SetModelId("RV7000H");
  CHECK(HostModelId(settings) == "RV7000H");
  SetModelId("RV7000HX");
  CHECK(HostModelId(settings) == "RV7000HX");
}

TEST_CASE_FIXTURE(NamesFixture, "the unknown model's name fills its field exactly") {
  StoreModelName(settings, kUnknownModelName);
  CHECK(ModelName() == "4F 52 56 41 4E 20 20 00");
}

TEST_CASE_FIXTURE(NamesFixture, "a shorter name is terminated, and nothing is written behind it") {
  std::fill(std::begin(settings.modelName), std::end(settings.modelName), '#');
  StoreModelName(settings, "HK300");
  CHECK(ModelName() == "48 4B 33 30 30 00 23 23");
  StoreModelName(settings, "");
  CHECK(ModelName() == "00 4B 33 30 30 00 23 23");
}

TEST_CASE_FIXTURE(NamesFixture, "a name of eight characters is cut to seven and terminated") {
  StoreModelName(settings, "ABCDEFGH");
  CHECK(ModelName() == "41 42 43 44 45 46 47 00");
  CHECK(settings.docFeedOption == 0);
}

TEST_CASE_FIXTURE(NamesFixture, "a product name of 16 characters is stored as it is, terminated") {
  CHECK(StoreProductName(settings, Text("SCANNER QM-43000")) == "SCANNER QM-43000");
  CHECK(ProductName() == std::string("SCANNER QM-43000\0", 17));
}

TEST_CASE_FIXTURE(NamesFixture, "a shorter product name is padded with blanks") {
  std::fill(std::begin(settings.productNameReply), std::end(settings.productNameReply), '#');
  CHECK(StoreProductName(settings, Text("RV-700XL") + Fill(8, 0)) == "RV-700XL        ");
  CHECK(ProductName() == std::string("RV-700XL        \0", 17));
}

TEST_CASE_FIXTURE(NamesFixture, "a product name that is cut off by the reply is padded too") {
  CHECK(StoreProductName(settings, Text("RV")) == "RV              ");
  CHECK(StoreProductName(settings, {}).front() == '\0');
}

TEST_CASE_FIXTURE(NamesFixture, "no more than 16 characters of a product name are taken") {
  CHECK(StoreProductName(settings, Text("SCANNER QM-43000 II")) == "SCANNER QM-43000");
  CHECK(ProductName() == std::string("SCANNER QM-43000\0", 17));
  CHECK(settings.reserved1809[0] == 0);
}

TEST_CASE_FIXTURE(NamesFixture, "the first character is never padded: an empty name stays empty") {
  std::fill(std::begin(settings.productNameReply), std::end(settings.productNameReply), '#');
  CHECK(StoreProductName(settings, Fill(16, 0)).front() == '\0');
  CHECK(std::strlen(settings.productNameReply) == 0);
}

}  // namespace pmddb832::tests
