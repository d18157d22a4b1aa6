#pragma once

#include <array>
#include <memory>

#include "tests/models/command_set.h"
#include "tests/models/host_call.h"

namespace pmddb832::models {

// The module as its host sees it, from load to unload: it finds out what the scanner answers, and
// hands each call to the family's command set. Each set is told in three files, in the order of a
// scan: its identity, what is sent to set a scan up, its image. What is "free choice" there could
// be otherwise, as far as scanners and hosts go: it is as the module has it.
class ModuleModel {
 public:
  explicit ModuleModel(Device& device) : wire(device) {}

  Outcome Run(const HostCall& call);

  // The host's two records, of which the first is the current one at first.
  std::array<Record, 2> records;
  Wire wire;

 private:
  bool Open(std::uint32_t record);
  bool ProbeExtendedSupport();
  void Dispatch(const HostCall& call, Outcome& outcome);

  Session session_{&records[0], wire};
  bool extendedSupport_ = false;
  std::unique_ptr<CommandSet> set_;
};

}  // namespace pmddb832::models
