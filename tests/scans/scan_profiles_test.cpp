#include <doctest/doctest.h>

#include <algorithm>
#include <array>
#include <filesystem>

#include "simulator/catalog/profile.h"
#include "simulator/faults/fault_injector.h"
#include "tests/safety/meant_leak.h"
#include "tests/scans/whole_scan.h"

// Every profile of the project through the module: opened, a small area scanned.

using namespace pmddb832;
using namespace pmddb832::tests;

namespace {

constexpr std::uint32_t kWarmingUp = 43;
constexpr std::uint32_t kNoReason = 62;  // the scan failed with the code 0
constexpr int kMostTries = 10;

// What the host is told in the end, where that is not success.
struct ErrorRow {
  std::string_view profile;
  std::uint32_t page;  // counted from 1; 0: the scanner does not open
  std::uint32_t error;
};
constexpr std::array kErrors{
    ErrorRow{"loose_cable", 2, 9},
    ErrorRow{"unknown_level", 0, 10},
};

// A script on a scanner of the catalog, and what the host is told when it scans several blocks.
struct ScriptRow {
  std::string_view script;
  std::string_view scanner;
  std::uint32_t error;
};
constexpr std::array kScripts{
    ScriptRow{"lost_block", "extended", 9},
    ScriptRow{"lost_lines", "standard", kNoReason},
    ScriptRow{"refused_parameters", "extended", 22},
};

const ErrorRow* FindError(std::string_view profile) {
  const auto row = std::find_if(kErrors.begin(), kErrors.end(),
                                [&](const ErrorRow& error) { return error.profile == profile; });
  return row == kErrors.end() ? nullptr : &*row;
}

// Without the schema.
std::vector<std::filesystem::path> FilesIn(const char* folder) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    const bool isProfile = entry.path().extension() == ".json" && entry.path().stem() != "schema";
    if (isProfile) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

simulator::Picture ReadNothing(const std::string&) {
  return ColourPicture(600, 400);
}

// A profile's scanner with its cable, and a host that scans 16 pixels wide at 100 dpi from it.
struct ProfileDesk {
  explicit ProfileDesk(const simulator::Profile& profile)
      : scanner(MakeScanner(profile, ReadNothing, ColourPicture(600, 400))),
        cable(*scanner, profile.faults),
        host(*scanner) {
    host.settings.deviceInterface = &cable;
    host.settings.resolution = 100;
    std::copy(profile.modelId.begin(), profile.modelId.end(), host.settings.modelId);
  }

  // The error code or kNoReason; 0 when all lines came. A scanner that warms up is asked again.
  std::uint32_t ScanPage(std::uint32_t lines = 10) {
    host.settings.scanSource = host.settings.docFeedOption == 0 ? 1 : 0;
    host.SetArea(0, 0, 16, lines);
    ScannedImage image;
    for (int tries = 0; tries < kMostTries; ++tries) {
      image = host.Acquire(5);
      if (image.error != kWarmingUp) break;
    }
    const bool isWhole = image.rows.size() == lines;
    return image.error == 0 && !isWhole ? kNoReason : image.error;
  }

  const std::unique_ptr<simulator::Scanner> scanner;
  simulator::FaultInjector cable;
  WholeScan host;
};

void CheckProfile(const simulator::Profile& profile, const ErrorRow* expected) {
  ProfileDesk desk(profile);
  desk.host.settings.docFeedOption = 2;
  REQUIRE(desk.host.Open() == (expected == nullptr || expected->page != 0));
  if (expected != nullptr && expected->page == 0) {
    CHECK(desk.host.module->GetScanError() == expected->error);
  } else {
    for (std::uint32_t page = 1; page <= 2; ++page) {
      CAPTURE(page);
      const bool fails = expected != nullptr && expected->page == page;
      if (page == 1 || fails) CHECK(desk.ScanPage() == (fails ? expected->error : 0));
    }
  }
  CHECK(Violations(*desk.scanner) == "");
  CHECK(desk.cable.Unreached().empty());
}

}  // namespace

TEST_CASE("every profile makes a scanner that the module scans with, or tells why not") {
  CHECK(FilesIn(PMDDB832_PROFILES).size() >= 12);
  for (const std::filesystem::path& file : FilesIn(PMDDB832_PROFILES)) {
    const std::string name = file.stem().string();
    CAPTURE(name);
    CheckProfile(simulator::ReadProfile(file.generic_string()), FindError(name));
  }
}

TEST_CASE("every profile is described") {
  for (const std::filesystem::path& file : FilesIn(PMDDB832_PROFILES)) {
    CAPTURE(file);
    CHECK(simulator::ReadProfile(file.generic_string()).description.size() > 20);
  }
}

TEST_CASE("every script of faults strikes, and ends a scan with its code") {
  for (const ScriptRow& row : kScripts) {
    CAPTURE(row.script);
    simulator::Profile profile;
    profile.config = simulator::ConfigOf(row.scanner);
    profile.faults = simulator::ReadFaultScript(
        std::string(PMDDB832_PROFILES "/faults/").append(row.script).append(".json"));
    ProfileDesk desk(profile);
    REQUIRE(desk.host.Open());
    CHECK(desk.ScanPage(800) == row.error);
    CHECK(Violations(*desk.scanner) == "");
    CHECK(desk.cable.Unreached().empty());
  }
}

TEST_CASE("every script of faults is one of those") {
  CHECK(FilesIn(PMDDB832_PROFILES "/faults").size() == kScripts.size());
}
