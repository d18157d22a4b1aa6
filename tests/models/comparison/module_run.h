#pragma once

#include <array>
#include <memory>

#include "tests/models/comparison/replay.h"
#include "tests/models/host_call.h"
#include "tests/models/record.h"

namespace pmddb832::models {

// The module itself, loaded at the begin of the scope and unloaded at its end. One at a time.
class ModuleRun {
 public:
  ModuleRun();
  ~ModuleRun();
  ModuleRun(const ModuleRun&) = delete;
  ModuleRun& operator=(const ModuleRun&) = delete;

  // What the records of the host are to name as their device.
  void* DeviceOfRecords();
  void SetRecords(const std::array<Record, 2>& records);
  std::array<Record, 2> Records() const;
  Outcome Run(const HostCall& call);

  Replay replay;

 private:
  struct HostRecords;
  void Dispatch(const HostCall& call, Outcome& outcome);

  std::unique_ptr<HostRecords> records_;
};

}  // namespace pmddb832::models
