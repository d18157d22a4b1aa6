#include <doctest/doctest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <type_traits>

#include "tests/interface/module_fixture.h"
#include "tests/interface/open_conversation.h"

namespace pmddb832::tests {
namespace {

struct Row {
  std::string_view name;
  std::size_t offset;
  std::size_t width;
};

// Every member that host and module share.
constexpr Row kMembers[] = {{"commandLevel", 0, 4},
                            {"commandLevelText", 4, 3},
                            {"modelName", 8, 8},
                            {"docFeedOption", 16, 4},
                            {"areaCount", 24, 2},
                            {"bedWidth", 28, 4},
                            {"bedHeight", 32, 4},
                            {"optionWidth", 36, 4},
                            {"optionHeight", 40, 4},
                            {"levelGroup", 80, 2},
                            {"halftoneInfo", 82, 2},
                            {"minResolution", 84, 2},
                            {"baseResolution", 86, 2},
                            {"maxResolution", 88, 2},
                            {"scanInfoVariant", 164, 2},
                            {"dropoutChannel", 172, 2},
                            {"pixelType", 176, 4},
                            {"zoom", 184, 2},
                            {"resolution", 186, 2},
                            {"originX", 208, 8},
                            {"originY", 216, 8},
                            {"invertMono", 226, 1},
                            {"brightness", 228, 4},
                            {"halftoneIndex", 240, 4},
                            {"sharpness", 244, 4},
                            {"gamma", 250, 2},
                            {"paramG", 252, 1},
                            {"altColorMode", 256, 4},
                            {"whitePadding", 260, 2},
                            {"scanSource", 264, 1},
                            {"customGamma", 268, 4},
                            {"colorCorrection", 276, 4},
                            {"halftoneOverride", 280, 4},
                            {"optionS", 284, 4},
                            {"mirrorImage", 288, 4},
                            {"keepPaper", 296, 4},
                            {"previewMode", 300, 4},
                            {"monoScan", 312, 4},
                            {"gammaTableB", 316, 256},
                            {"gammaTableG", 572, 256},
                            {"gammaTableR", 828, 256},
                            {"colorMatrix", 1340, 9},
                            {"optionParam", 1404, 1},
                            {"mainStatusBit5", 1434, 1},
                            {"mainStatusBit4", 1435, 1},
                            {"rangeEnabled", 1568, 2},
                            {"rangeMin", 1570, 2},
                            {"rangeMax", 1572, 2},
                            {"areaWidthPx", 1576, 4},
                            {"areaHeightPx", 1580, 4},
                            {"areaLeftPx", 1584, 4},
                            {"areaTopPx", 1588, 4},
                            {"thresholdT", 1600, 2},
                            {"customGammaCode", 1602, 1},
                            {"progressWindow", 1784, 8},
                            {"productNameReply", 1792, 17},
                            {"modelId", 1816, 8},
                            {"deviceInterface", 1840, 8},
                            {"useDeviceInterface", 1852, 4},
                            {"maxResolutionCopy", 1860, 2},
                            {"minResolutionCopy", 1862, 2},
                            {"baseResolutionCopy", 1864, 2},
                            {"feederStatusExtra", 1868, 4}};

// What an identification may write.
constexpr std::string_view kWrittenAtIdentification[] = {
    "commandLevel",       "commandLevelText", "modelName",         "docFeedOption",
    "areaCount",          "bedWidth",         "bedHeight",         "optionWidth",
    "optionHeight",       "levelGroup",       "halftoneInfo",      "minResolution",
    "baseResolution",     "maxResolution",    "scanInfoVariant",   "scanSource",
    "mainStatusBit5",     "mainStatusBit4",   "rangeEnabled",      "rangeMin",
    "rangeMax",           "productNameReply", "maxResolutionCopy", "minResolutionCopy",
    "baseResolutionCopy", "feederStatusExtra"};

bool IsReserved(std::string_view name) {
  return name.starts_with("reserved");
}

const SettingsField* FindField(std::string_view name) {
  for (const SettingsField& field : kScannerSettingsFields) {
    if (field.name == name) return &field;
  }
  return nullptr;
}

// The record's bytes from an offset on.
std::string BytesAt(const ScannerSettings& settings, std::size_t offset, std::size_t count) {
  Bytes bytes(count);
  std::memcpy(bytes.data(), reinterpret_cast<const std::uint8_t*>(&settings) + offset, count);
  return Hex(bytes);
}

}  // namespace

TEST_CASE("the settings record has 1872 bytes") {
  CHECK(sizeof(ScannerSettings) == 1872);
}

TEST_CASE("every shared member lies at its fixed offset with its fixed width") {
  for (const Row& member : kMembers) {
    CAPTURE(member.name);
    const SettingsField* const field = FindField(member.name);
    REQUIRE(field != nullptr);
    CHECK(field->matchesRecord);
    CHECK(field->offset == member.offset);
    CHECK(field->width == member.width);
  }
}

TEST_CASE("the table of members lists the shared ones and the gaps between them, nothing else") {
  std::size_t shared = 0;
  for (const SettingsField& field : kScannerSettingsFields) {
    if (!IsReserved(field.name)) ++shared;
  }
  CHECK(shared == std::size(kMembers));
}

TEST_CASE("every gap is named after its offset") {
  for (const SettingsField& field : kScannerSettingsFields) {
    if (IsReserved(field.name)) CHECK(field.name == "reserved" + std::to_string(field.offset));
  }
}

TEST_CASE("integers are little-endian, negative ones in two's complement") {
  ScannerSettings settings{};
  settings.docFeedOption = 0x12345678;
  settings.resolution = 0x0258;
  settings.brightness = -334;
  CHECK(BytesAt(settings, 16, 4) == "78 56 34 12");
  CHECK(BytesAt(settings, 186, 2) == "58 02");
  CHECK(BytesAt(settings, 228, 4) == "B2 FE FF FF");
}

TEST_CASE("the origin is a pair of doubles") {
  ScannerSettings settings{};
  settings.originX = 1.0;
  settings.originY = -2.5;
  CHECK(BytesAt(settings, 208, 8) == "00 00 00 00 00 00 F0 3F");
  CHECK(BytesAt(settings, 216, 8) == "00 00 00 00 00 00 04 C0");
}

TEST_CASE("brightness, sharpness and halftone index are signed") {
  static_assert(std::is_signed_v<decltype(ScannerSettings::brightness)>);
  static_assert(std::is_signed_v<decltype(ScannerSettings::sharpness)>);
  static_assert(std::is_signed_v<decltype(ScannerSettings::halftoneIndex)>);
}

TEST_CASE("a threshold of 0xFFFF means unset") {
  CHECK(kThresholdUnset == 0xFFFF);
}

TEST_CASE("the acquisition records hold 32-bit members at fixed offsets") {
  CHECK(offsetof(AcquisitionSetup, status) == 0);
  CHECK(offsetof(AcquisitionSetup, lineBytes) == 8);
  CHECK(offsetof(AcquisitionSetup, widthPixels) == 16);
  CHECK(offsetof(AcquisitionSetup, heightLines) == 20);
  CHECK(sizeof(AcquisitionSetup) == 24);
  CHECK(offsetof(AcquisitionBand, status) == 0);
  CHECK(offsetof(AcquisitionBand, done) == 8);
  CHECK(offsetof(AcquisitionBand, lines) == 12);
  CHECK(offsetof(AcquisitionBand, bytes) == 16);
  CHECK(sizeof(AcquisitionBand) == 20);
}

TEST_CASE_FIXTURE(ModuleFixture, "an open leaves the host's members and the gaps untouched") {
  std::memset(static_cast<void*>(&settings), 0xA5, sizeof settings);
  settings.deviceInterface = &device;
  const ScannerSettings before = settings;
  ScriptExtendedOpen(device);
  REQUIRE(PMOpenScanner(&settings) == 1);
  for (const SettingsField& field : kScannerSettingsFields) {
    const auto* const written = std::ranges::find(kWrittenAtIdentification, field.name);
    if (written != std::end(kWrittenAtIdentification)) continue;
    CAPTURE(field.name);
    CHECK(BytesAt(settings, field.offset, field.width) ==
          BytesAt(before, field.offset, field.width));
  }
}

}  // namespace pmddb832::tests
