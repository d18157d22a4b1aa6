#pragma once

#include <cstdint>
#include <span>

#include "tests/safety/guarded_memory.h"
#include "tests/scans/module_under_test.h"
#include "transport/still_image_device.h"

namespace pmddb832::tests {

// A host whose record, acquisition records and image buffers each lie beside an inaccessible page,
// and the blocks of the module's heaps too. The settings are those of a true-colour scan of
// `kWidth` x `kHeight` pixels at 300 dpi, not from the edge of the bed.
class GuardedHost {
 public:
  static constexpr std::uint32_t kWidth = 217;
  static constexpr std::uint32_t kHeight = 7;

  GuardedHost(StillImageDevice& scanner, Guard guard);
  ~GuardedHost();
  GuardedHost(const GuardedHost&) = delete;
  GuardedHost& operator=(const GuardedHost&) = delete;

  ScannerSettings& Settings() const;
  // All bytes of the record.
  std::span<std::uint8_t> Record() const { return record_.Bytes(); }

  bool Open() { return module_->OpenScanner(&Settings()) == 1; }
  AcquisitionSetup SetUp(std::uint32_t outputFormat);
  // Acquires into a buffer of exactly `bytes`, and checks that nothing behind its band was written.
  AcquisitionBand Acquire(std::uint32_t bytes);
  // The option's area in pixels; what the module returns.
  std::uint32_t PaperSize(std::uint32_t option);

  const ModuleExports* operator->() const { return module_.operator->(); }

 private:
  Guard guard_;
  GuardedMemory record_;
  GuardedMemory setup_;
  std::uint32_t lineBytes_ = 0;
  ModuleUnderTest module_;  // unloaded before the record goes
};

}  // namespace pmddb832::tests
