#include <doctest/doctest.h>

#include <array>

#include "simulator/catalog/catalog.h"
#include "tests/safety/module_memory.h"
#include "tests/scans/faulty_device.h"
#include "tests/scans/whole_scan.h"

// What the module holds while no scanner is open.

using namespace pmddb832;
using namespace pmddb832::tests;

namespace {

struct Subject {
  const char* name;            // of the simulated scanner
  std::size_t statusTransfer;  // of its open: where the status of the option unit is asked for
  std::size_t set;             // blocks of a command set that is closed: it and its parts
};

constexpr std::array kSubjects{Subject{"extended", 7, 6}, Subject{"standard", 11, 4}};
constexpr std::size_t kChannel = 1;

// Blocks that an open of the scanner and a close behind it leave; the open fails with the fault.
std::size_t BlocksBehind(const Subject& subject, std::optional<Fault> fault) {
  const auto scanner = simulator::MakeScanner(subject.name, ColourPicture(8, 8));
  FaultyDevice device(*scanner, fault);
  WholeScan host(*scanner);
  WatchModule();
  const std::size_t before = MemoryOfModule().blocks;
  host.settings.deviceInterface = &device;
  CHECK(host.Open() == !fault.has_value());
  if (!fault.has_value()) host.module->CloseScanner();
  const std::size_t held = MemoryOfModule().blocks - before;
  host.settings.deviceInterface = nullptr;
  return held;
}

}  // namespace

TEST_CASE("a closed scanner leaves its channel, and its command set without its buffers") {
  for (const Subject& subject : kSubjects) {
    CAPTURE(subject.name);
    CHECK(BlocksBehind(subject, std::nullopt) == kChannel + subject.set);
  }
}

TEST_CASE("an open that failed while it identified the scanner leaves no more than a close does") {
  for (const Subject& subject : kSubjects) {
    CAPTURE(subject.name);
    const Fault fault{FaultKind::kFails, subject.statusTransfer};
    CHECK(BlocksBehind(subject, fault) == kChannel + subject.set);
  }
}
