#include <cstring>

#include "tests/extended/extended_fixture.h"

namespace pmddb832::tests::extended {
namespace {

// The identity of a scanner with that product name: zero bytes behind it.
Bytes Named(std::string_view productName) {
  return With(With(Identity(), 46, Fill(16, 0)), 46, Text(productName));
}

Bytes BytesOf(const char* member, std::size_t count) {
  return Text(std::string_view(member, count));
}

// Opens that scanner for a host that expects `modelId`, in a record whose names hold Z before.
struct NamedScanner : ExtendedScanner {
  NamedScanner(std::string_view modelId, std::string_view productName) {
    std::memset(settings.modelName, 'Z', sizeof settings.modelName);
    std::memset(settings.productNameReply, 'Z', sizeof settings.productNameReply);
    std::memset(settings.modelId, 0, sizeof settings.modelId);
    std::memcpy(settings.modelId, modelId.data(), modelId.size());
    REQUIRE(Open(Named(productName)) == 1);
  }

  // Byte 25 of the parameters of a deep grey scan must be that.
  void CheckHighBitDepth(std::uint8_t bits) {
    settings.pixelType = 8;
    StartScan(With(ParameterBlock(), 25, {bits}), Header(0, 0, 128), 8);
    SendLastBlock(Fill(128, 7));
    CHECK(Acquire(128).record.status == kGoOn);
  }
};

TEST_CASE("listed models are reported under their own names, QM6000 as QM60000") {
  struct Row {
    const char* modelId;
    const char* name;
  };
  for (const Row& row :
       {Row{"QM43000", "QM43000"}, Row{"QM2700", "QM2700"},   Row{"QM1000", "QM1000"},
        Row{"QM2500", "QM2500"},   Row{"QM5500", "QM5500"},   Row{"QM6500", "QM6500"},
        Row{"QM6000", "QM60000"},  Row{"RV5000", "RV5000"},   Row{"QM5700", "QM5700"},
        Row{"QM1700", "QM1700"},   Row{"QM1600", "QM1600"},   Row{"QM8700", "QM8700"},
        Row{"QM3200", "QM3200"},   Row{"QM8600", "QM8600"},   Row{"RV3100", "RV3100"},
        Row{"QM41000", "QM41000"}, Row{"RV7000H", "RV7000H"}, Row{"RV6000H", "RV6000H"},
        Row{"RV5200", "RV5200"},   Row{"WX4500", "WX4500"},   Row{"WX4000", "WX4000"},
        Row{"HK300", "HK300"}}) {
    CAPTURE(row.modelId);
    const NamedScanner scanner(row.modelId, "WHATEVER");
    CHECK(std::string(scanner.settings.modelName) == row.name);
  }
}

TEST_CASE("an unlisted model id is its own name") {
  for (const std::string_view modelId : {"QM600", "QM60000", "qm6000", "X"}) {
    CAPTURE(modelId);
    const NamedScanner scanner(modelId, "WHATEVER");
    CHECK(std::string(scanner.settings.modelName) == modelId);
  }
}

TEST_CASE("a name is written with its terminator and not beyond") {
  const NamedScanner scanner("HK300", "WHATEVER");
  CHECK(BytesOf(scanner.settings.modelName, 8) == FromHex("48 4B 33 30 30 00 5A 5A"));
}

TEST_CASE("no model id leaves the name ORVAN and two blanks, filling the member") {
  const NamedScanner scanner("", "WHATEVER");
  CHECK(BytesOf(scanner.settings.modelName, 8) == FromHex("4F 52 56 41 4E 20 20 00"));
}

TEST_CASE("a model id of eight characters without a terminator is cut to seven") {
  const NamedScanner scanner("ABCDEFGH", "WHATEVER");
  CHECK(BytesOf(scanner.settings.modelName, 8) == FromHex("41 42 43 44 45 46 47 00"));
}

TEST_CASE("products with an entry of their own are never reported, whatever the host expects") {
  for (const std::string_view product : {"SCANNER RV-5000 ", "Prospectra3100  ", "SCANNER RV-7000 ",
                                         "RV-700XL        ", "SCANNER QM-41000"}) {
    for (const std::string_view modelId : {"", "OTHER"}) {
      CAPTURE(product);
      CAPTURE(modelId);
      NamedScanner scanner(modelId, product);
      CHECK(std::string(scanner.settings.modelName) == "ORVAN  ");
      scanner.CheckHighBitDepth(0x0C);
    }
  }
}

TEST_CASE("two products are not reported either and have 14 bits a colour") {
  for (const std::string_view product : {"SCANNER RV-3100 ", "Prospectra3140XL"}) {
    for (const std::string_view modelId : {"", "OTHER"}) {
      CAPTURE(product);
      CAPTURE(modelId);
      NamedScanner scanner(modelId, product);
      CHECK(std::string(scanner.settings.modelName) == "ORVAN  ");
      scanner.CheckHighBitDepth(0x0E);
    }
  }
}

TEST_CASE("a listed model id comes before the product: the depth stays 12 bits") {
  NamedScanner scanner("RV3100", "SCANNER RV-3100 ");
  CHECK(std::string(scanner.settings.modelName) == "RV3100");
  scanner.CheckHighBitDepth(0x0C);
}

TEST_CASE("a shorter product name is padded with blanks before it is compared") {
  NamedScanner scanner("OTHER", std::string_view("SCANNER RV-3100\0", 16));
  CHECK(std::string(scanner.settings.modelName) == "ORVAN  ");
  CHECK(std::string(scanner.settings.productNameReply) == "SCANNER RV-3100 ");
  scanner.CheckHighBitDepth(0x0E);
}

TEST_CASE("the product name is compared as a whole") {
  for (const std::string_view product :
       {"SCANNER RV-3100X", "SCANNER RV-310", "scanner RV-3100 "}) {
    CAPTURE(product);
    NamedScanner scanner("OTHER", product);
    CHECK(std::string(scanner.settings.modelName) == "OTHER");
    scanner.CheckHighBitDepth(0x0C);
  }
}

TEST_CASE("the product name is stored padded to 16 characters and terminated") {
  const NamedScanner scanner("", "AB");
  CHECK(BytesOf(scanner.settings.productNameReply, 17) == Text("AB              ") + Bytes{0});
}

TEST_CASE("of a product name that fills its field, 16 characters are stored") {
  const NamedScanner scanner("", "0123456789ABCDEF");
  CHECK(BytesOf(scanner.settings.productNameReply, 17) == Text("0123456789ABCDEF") + Bytes{0});
}

TEST_CASE("the first character of a product name is never padded") {
  const NamedScanner scanner("", "");
  CHECK(std::string(scanner.settings.productNameReply).empty());
}

}  // namespace
}  // namespace pmddb832::tests::extended
