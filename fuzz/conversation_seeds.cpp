#include "fuzz/conversation_seeds.h"

#include <array>

#include "fuzz/corner_seeds.h"
#include "fuzz/scanner_names.h"
#include "fuzz/seed_parts.h"

namespace pmddb832::fuzz {
namespace {

constexpr std::array<SeedScan, 18> kScans{{{0, 0, 0x00, 0},
                                           {0, 0, 0x01, 0},
                                           {1, 1, 0x00, 0},
                                           {2, 2, 0x00, 0},
                                           {2, 2, 0x02, 0},
                                           {3, 3, 0x00, 0},
                                           {4, 5, 0x00, 0},
                                           {5, 5, 0x00, 0},
                                           {5, 1, 0x18, 0},
                                           {5, 5, 0x04, 1},
                                           {5, 5, 0x81, 1},
                                           {6, 6, 0x00, 0},
                                           {7, 7, 0x00, 0},
                                           {7, 1, 0x02, 0},
                                           {8, 8, 0x01, 0},
                                           {8, 8, 0x03, 0},
                                           {2, 2, 0x60, 0},
                                           {2, 4, 0x0C, 1}}};

void AddScans(std::vector<Conversation>& seeds) {
  constexpr std::array<std::uint8_t, 4> kFeederFlags{0x00, 0x20, 0x30, 0x38};
  for (const SeedScan& scan : kScans) {
    seeds.push_back(WholeScan(scan));
    Conversation feeder = WholeScan(scan);
    Put(feeder.scanner, scanner::kFeederStatus, 0x80);
    Put(feeder.scanner, scanner::kFeederFlags, kFeederFlags[seeds.size() / 2 % 4]);
    Put(feeder.scanner, scanner::kMainStatus, seeds.size() / 2 % 4 < 2 ? 0x00 : 0x20);
    seeds.push_back(feeder);
  }
  for (const std::uint8_t status : std::array<std::uint8_t, 3>{0x80, 0xC0, 0xC2}) {
    Conversation transparency = WholeScan({5, 5, 0, 1});
    Put(transparency.scanner, scanner::kTransparencyStatus, status);
    seeds.push_back(transparency);
  }
}

void AddKinds(std::vector<Conversation>& seeds) {
  for (std::size_t level = 0; level < kLevels.size(); ++level) {
    seeds.push_back(WholeScan({5, 5, 0x19, 0}));
    Put(seeds.back().scanner, scanner::kLevel, static_cast<std::uint8_t>(level));
  }
  for (std::size_t product = 0; product < kProductNames.size(); ++product) {
    seeds.push_back(WholeScan({7, 5, 0, 0}));
    Put(seeds.back().scanner, scanner::kProduct, static_cast<std::uint8_t>(product));
  }
  for (std::size_t model = 0; model < kModelIds.size(); ++model) {
    seeds.push_back(WholeScan({8, 2, 0, 0}));
    Put(seeds.back().host, host::kModel, static_cast<std::uint8_t>(model));
    Put(seeds.back().host, host::kSystem, static_cast<std::uint8_t>(model));
  }
  for (std::uint8_t granted = 1; granted < 12; ++granted) {
    seeds.push_back(WholeScan({2, 2, 0, 0}));
    Put(seeds.back().host, host::kAllocations, granted);
    Put(seeds.back().host, host::kHeapBlocks, granted % 3);
    Put(seeds.back().host, host::kFlags, host::kHasLog);
  }
}

// The action between two bands, with several blocks to come.
void AddAmidBlocks(HostAction action, std::uint8_t argument, std::vector<Conversation>& seeds) {
  Conversation amid = WideScan();
  AddCall(amid, HostAction::kSetUp, 5);
  AddCall(amid, HostAction::kAcquire, 3);
  AddCall(amid, action, argument, 2);
  AddCall(amid, HostAction::kAcquire, 3);
  AddCall(amid, HostAction::kAbort);
  AddCall(amid, HostAction::kAcquire, 3);
  AddCall(amid, HostAction::kAcquire, 3, 3);
  seeds.push_back(amid);
}

// The action out of the progress routine, a repaint, and the transfers around a block.
void AddFromWithin(HostAction action, std::uint8_t argument, std::vector<Conversation>& seeds) {
  Conversation within = WideScan();
  AddCall(within, HostAction::kSetUp, 5, 1);
  AddCall(within, HostAction::kAcquire, 3);
  AddCall(within, action, argument, 2);
  AddCall(within, HostAction::kAcquire, 3);
  AddCall(within, HostAction::kScan, 2, kSeedRows);
  seeds.push_back(within);
  Put(within.host, host::kFlags, host::kHasWindow);
  Put(within.calls.items[0], host_call::kValue, 0);
  seeds.push_back(within);
  Put(within.host, host::kFlags, 0);
  AddFault(within, Moment::kBlock, 0, FaultKind::kCallWithin);
  for (const Moment moment : {Moment::kBlock, Moment::kBlockHeader, Moment::kBlockAnswer}) {
    Put(within.faults.items[0], fault::kMoment, static_cast<std::uint8_t>(moment));
    seeds.push_back(within);
  }
}

void AddFaults(std::vector<Conversation>& seeds) {
  for (std::uint8_t moment = 0; moment < kMoments; ++moment) {
    for (std::uint8_t kind = 0; kind < kFaultKinds; ++kind) {
      Conversation faulty = WholeScan(kScans[moment]);
      AddCall(faulty, HostAction::kSetFocus, 1, 2);
      AddCall(faulty, HostAction::kSetFocus, 1, 2);
      AddCall(faulty, HostAction::kGetOptionStatus, 0);
      AddCall(faulty, HostAction::kGetScanPaperSize, 1);
      AddCall(faulty, HostAction::kScan, 5, kSeedRows);
      AddFault(faulty, static_cast<Moment>(moment), kind % 2, static_cast<FaultKind>(kind), 1,
               0x80);
      seeds.push_back(faulty);
    }
  }
}

}  // namespace

std::vector<Conversation> ConversationSeeds(Family family) {
  std::vector<Conversation> seeds;
  AddScans(seeds);
  AddKinds(seeds);
  for (std::uint8_t action = 0; action < kHostActions; ++action) {
    for (std::uint8_t argument = 0; argument < 2; ++argument) {
      AddAmidBlocks(static_cast<HostAction>(action), argument, seeds);
      AddFromWithin(static_cast<HostAction>(action), argument, seeds);
    }
  }
  AddFaults(seeds);
  AddCornerSeeds(seeds);
  // In the standard set the start's status is that of a block.
  if (family == Family::kExtended) {
    seeds.push_back(WholeScan({5, 5, 0, 0}));
    Put(seeds.back().scanner, scanner::kStartStatus, 0x80);
  }
  return seeds;
}

}  // namespace pmddb832::fuzz
