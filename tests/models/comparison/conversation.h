#pragma once

#include <memory>
#include <string>

#include "tests/models/comparison/random.h"
#include "tests/models/comparison/scanner.h"
#include "tests/models/host_call.h"
#include "tests/models/module_model.h"

namespace pmddb832::models {

enum class Family { kExtended, kStandard };

// A host that scans with one scanner: its calls follow from the seed and from what the calls before
// them returned, its records from the seed.
class Conversation {
 public:
  // `device` is what the records name as the host's device.
  Conversation(Family family, std::uint64_t seed, void* device);

  bool IsOver() const { return callsLeft_ == 0; }
  // The next call; `Model()` is then asked what it does.
  HostCall NextCall();
  ModuleModel& Model() { return *model_; }
  // The record that is current for the host.
  Record& Current() const { return model_->records[current_]; }
  void Learn(const HostCall& call, const Outcome& outcome);

 private:
  HostCall IdleCall();
  HostCall ScanningCall();
  HostCall AnyCall();
  HostCall BandCall();
  void ChooseManners();
  void ChooseRecord(Record& record);
  void ChooseScan(Record& record);
  void ChooseArea(Record& record);
  void MoveToRightEdge(Record& record);
  void ChooseOptions(Record& record);

  const Family family_;
  Random random_;
  Manners manners_;
  std::unique_ptr<Scanner> scanner_;
  std::unique_ptr<ModuleModel> model_;
  void* const device_;
  std::uint32_t callsLeft_;
  std::uint32_t current_ = 0;
  bool open_ = false;
  bool scanning_ = false;
  std::uint32_t lineBytes_ = 0, lines_ = 0;
};

}  // namespace pmddb832::models
