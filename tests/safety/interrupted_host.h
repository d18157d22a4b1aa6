#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "simulator/device/scanner.h"
#include "tests/safety/module_memory.h"
#include "tests/safety/progress_window.h"
#include "tests/scans/module_under_test.h"
#include "transport/raw_device.h"

namespace pmddb832::tests {

// Where the host's code runs while a call of the host is under way.
enum class Place { kRead, kWrite, kProgress, kRepaint };

// What the host got from one step of its session.
struct StepResult {
  bool failed = false;
  std::vector<std::uint32_t> values;
  std::vector<std::uint8_t> rows = {};
  std::uint32_t error = 0;  // PMGetScanError behind it

  bool operator==(const StepResult&) const = default;
};

class InterruptedHost;

struct SessionStep {
  std::string_view name;
  StepResult (*run)(InterruptedHost& host);
  bool repeats = false;  // transfers what a step before it did
};

// Every export in the order in which a host calls them: open, queries, a whole scan of several
// blocks in three bands, a scan that is aborted, close, and open and close again.
std::span<const SessionStep> WholeSession();

// A host whose session may be interrupted at one moment by further calls. It has two records, each
// for a scanner of its own. All scans are of 1100 x 20 pixels in true colour.
class InterruptedHost {
 public:
  static constexpr std::uint32_t kBandBytes = 3 * 1100 * 7;

  InterruptedHost(const char* scannerName, std::uint8_t source);
  ~InterruptedHost();
  InterruptedHost(const InterruptedHost&) = delete;
  InterruptedHost& operator=(const InterruptedHost&) = delete;

  const ModuleExports* operator->() const { return module_.operator->(); }

  // When the host's code has run `moment` times, `interruption` runs once, in that place; what it
  // calls is not interrupted and not counted.
  void InterruptAt(std::size_t moment, std::function<void()> interruption);
  // The places where the host's code ran, in their order.
  const std::vector<Place>& Moments() const { return moments_; }

  StepResult Run(const SessionStep& step);
  // A new session with fresh scanners and fresh records, which nothing interrupts: open, a whole
  // scan, close.
  std::vector<StepResult> ScanAfresh();

  std::uint32_t Open(ScannerSettings& settings);
  AcquisitionSetup SetUp(std::uint32_t outputFormat);
  // Acquires a band into a buffer of kBandBytes beside an inaccessible page.
  StepResult Acquire();

  // Transfers so far with the scanner of the other record.
  std::size_t OtherTransfers() const { return otherDevice_.transfers; }

  ScannerSettings settings{};
  ScannerSettings otherSettings{};
  const std::uint8_t source;

 private:
  // Passes transfers on to a scanner, and tells of each one before.
  struct Device final : RawDevice {
    explicit Device(InterruptedHost& owner) : host(owner) {}
    std::int32_t RawReadData(void* buffer, std::uint32_t* byteCount, void* overlapped) override;
    std::int32_t RawWriteData(void* buffer, std::uint32_t byteCount, void* overlapped) override;
    bool Begin(Place place);

    InterruptedHost& host;
    std::unique_ptr<simulator::Scanner> scanner;
    std::size_t transfers = 0;
  };

  void Prepare();
  void Reached(Place place);

  const char* scannerName_;
  Device device_{*this};
  Device otherDevice_{*this};
  std::vector<Place> moments_;
  std::size_t interruptedMoment_ = 0;
  std::function<void()> interruption_;
  bool isInterrupted_ = false;
  ProgressWindow window_;
  // What an open again leaves behind, and the guards beside it, would add up.
  struct GuardedBlocks {
    ~GuardedBlocks() { GiveGuardedBlocks(); }
  };
  GuardedBlocks guardedBlocks_;
  ModuleUnderTest module_;  // unloaded before anything else goes
};

}  // namespace pmddb832::tests
