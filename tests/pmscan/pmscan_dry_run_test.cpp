#include <doctest/doctest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <vector>

#include "pmscan/captures/dry_run.h"
#include "transport/raw_device.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

// Takes everything, and answers with ACK.
struct Acknowledging : pmddb832::RawDevice {
  std::int32_t RawReadData(void* buffer, std::uint32_t* count, void*) override {
    std::fill_n(static_cast<std::uint8_t*>(buffer), *count, std::uint8_t{6});
    return 0;
  }
  std::int32_t RawWriteData(void* buffer, std::uint32_t count, void*) override {
    const auto* const first = static_cast<const std::uint8_t*>(buffer);
    written.emplace_back(first, first + count);
    return 0;
  }
  std::vector<Bytes> written;
};

struct Fixture {
  std::int32_t Write(Bytes bytes) {
    return dryRun.RawWriteData(bytes.data(), static_cast<std::uint32_t>(bytes.size()), nullptr);
  }
  // The letters of a command that has parameters, and the scanner's answer to them.
  void Begin(const Bytes& letters) {
    std::uint32_t count = 0;
    REQUIRE(Write(letters) == 0);
    REQUIRE(ReadOne(count) == 0);
  }
  std::int32_t ReadOne(std::uint32_t& count) {
    std::uint8_t byte = 0;
    count = 1;
    return dryRun.RawReadData(&byte, &count, nullptr);
  }

  Acknowledging scanner;
  pmscan::DryRunDevice dryRun{scanner};
};

TEST_CASE_FIXTURE(Fixture, "pmscan: a dry run passes on all that comes before the scan's start") {
  std::uint32_t count = 0;
  CHECK(Write({0x1B, 0x49}) == 0);
  CHECK(ReadOne(count) == 0);
  CHECK(count == 1);
  CHECK(scanner.written == std::vector<Bytes>{{0x1B, 0x49}});
  CHECK(!dryRun.HasReachedStart());
}

TEST_CASE_FIXTURE(Fixture, "pmscan: a dry run keeps the start of either family from the scanner") {
  for (const std::uint8_t prefix : Bytes{0x1B, 0x1C}) {
    pmscan::DryRunDevice device(scanner);
    Bytes start{prefix, 0x47};
    CHECK(device.RawWriteData(start.data(), 2, nullptr) < 0);
    CHECK(device.HasReachedStart());
  }
  CHECK(scanner.written.empty());
}

TEST_CASE_FIXTURE(Fixture, "pmscan: after its start a dry run lets nothing through") {
  Write({0x1C, 0x47});
  std::uint32_t count = 0;
  CHECK(Write({0x1B, 0x49}) < 0);
  CHECK(ReadOne(count) < 0);
  CHECK(count == 0);
  CHECK(dryRun.Recording().entries.size() == 1);
  CHECK(scanner.written.empty());
}

TEST_CASE_FIXTURE(Fixture, "pmscan: parameters that look like a start are not one") {
  Begin({0x1B, 0x52});
  CHECK(Write({0x1B, 0x47, 0x1C, 0x47}) == 0);
  CHECK(!dryRun.HasReachedStart());
}

TEST_CASE_FIXTURE(Fixture, "pmscan: a dry run tells commands, bytes and parameters") {
  Write({0x1B, 0x49});
  Begin({0x1B, 0x52});
  Write({0x2C, 0x01});
  Write({0x58, 0x02});
  Write({0x18});
  CHECK(pmscan::DryRunReport(dryRun.Recording()) ==
        "1B 49  ESC I level and identity\n"
        "1B 52  ESC R resolution\n"
        "  2C 01 58 02\n"
        "    main resolution     300 dpi\n"
        "    sub resolution      600 dpi\n"
        "18  CAN cancel\n");
}

TEST_CASE_FIXTURE(Fixture, "pmscan: the JSON of a dry run has the same") {
  Begin({0x1B, 0x52});
  Write({0x2C, 0x01, 0x58, 0x02});
  CHECK(pmscan::DryRunJson(dryRun.Recording()) == pmscan::Json::parse(R"({"commands": [
    {"name": "ESC R resolution", "bytes": "1B 52", "parameters": "2C 01 58 02",
     "fields": {"main resolution": "300 dpi", "sub resolution": "600 dpi"}}]})"));
}

}  // namespace
