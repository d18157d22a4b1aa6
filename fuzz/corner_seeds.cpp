#include "fuzz/corner_seeds.h"

#include <array>
#include <string_view>

#include "fuzz/seed_parts.h"
#include "interface/scanner_settings.h"

namespace pmddb832::fuzz {
namespace {

void AddWrite(Conversation& conversation, std::string_view field, std::uint32_t value) {
  std::uint8_t row = 0;
  while (kScannerSettingsFields[row].name != field) ++row;
  AddCall(conversation, HostAction::kWriteRecord, row, value);
}

// The record has the value in the field when the scan is set up and acquired, whatever the set-up
// says.
void AddScanWith(std::string_view field, std::uint32_t value, const SeedScan& scan,
                 std::vector<Conversation>& seeds) {
  Conversation conversation = WithoutCalls(scan);
  AddWrite(conversation, field, value);
  AddCall(conversation, HostAction::kSetUp, scan.outputFormat, 1);
  AddCall(conversation, HostAction::kAcquire, kSeedRows);
  AddCall(conversation, HostAction::kAcquireBytes, 0, 1000);
  AddCall(conversation, HostAction::kAcquireBytes, 0, 65280);
  seeds.push_back(conversation);
}

void AddRecords(std::vector<Conversation>& seeds) {
  for (const std::uint32_t width : {0u, 11000u, 30000u, 33000u, 0x02000000u, 0x7FFFFFFDu}) {
    AddScanWith("areaWidthPx", width, {5, 5, 0, 0}, seeds);
    AddScanWith("areaWidthPx", width, {8, 8, 0, 0}, seeds);
  }
  for (const std::uint32_t far : {0u, 65536u, 0xFFFFFFFFu}) {
    AddScanWith("areaLeftPx", far, {2, 2, 0, 0}, seeds);
    AddScanWith("areaTopPx", far, {2, 2, 0, 0}, seeds);
    AddScanWith("areaHeightPx", far, {2, 2, 0, 0}, seeds);
  }
  for (const std::uint32_t half : {0x7E007E00u, 0xFE00FE00u, 0x7FF87FF8u, 0u}) {
    AddScanWith("originX", half, {2, 2, 0, 0}, seeds);
    AddScanWith("resolution", half, {2, 2, 1, 0}, seeds);
  }
  AddScanWith("deviceInterface", 0, {2, 2, 0, 0}, seeds);
  AddScanWith("gamma", 180, {5, 5, 0, 0}, seeds);
  AddScanWith("customGammaCode", 4, {5, 5, 0x48, 0}, seeds);
}

// Wider than the lines of older levels may be, on a bed that is wide enough.
void AddWideBeds(std::vector<Conversation>& seeds) {
  for (std::uint8_t level = 0; level < 8; ++level) {
    Conversation wide = WithoutCalls({8, 8, 0, 0});
    Put(wide.scanner, scanner::kLevel, level);
    Put(wide.scanner, scanner::kResolution, 300);
    Put(wide.scanner, scanner::kFlatbedWidth, 65535);
    Put(wide.host, host::kWidth, level % 2 == 0 ? 16100 : 17000);
    AddCall(wide, HostAction::kSetUp, 8);
    AddCall(wide, HostAction::kAcquire, 3);
    AddCall(wide, HostAction::kAcquireBytes, 0, 65281);
    seeds.push_back(wide);
  }
}

// The whole length of a feeder's page at its first resolution, which is scanned from the middle.
void AddCentredPage(std::vector<Conversation>& seeds) {
  Conversation page = WithoutCalls({2, 2, 0, 0});
  Put(page.scanner, scanner::kFeederStatus, 0x80);
  Put(page.scanner, scanner::kMinimumResolution, 300);
  Put(page.host, host::kHeight, 6000);
  AddCall(page, HostAction::kSetUp, 2);
  AddCall(page, HostAction::kAcquire, kSeedRows);
  seeds.push_back(page);
}

// The end of a feeder's page, for each capability and each state of the feeder.
void AddPageEnds(std::vector<Conversation>& seeds) {
  for (const std::uint8_t flags : std::array<std::uint8_t, 4>{0x00, 0x20, 0x30, 0x38}) {
    for (const std::uint8_t feeder : std::array<std::uint8_t, 5>{0x80, 0xC0, 0xC2, 0xC4, 0xC8}) {
      Conversation page = WholeScan({5, 5, 0, 1});
      Put(page.scanner, scanner::kFeederStatus, feeder);
      Put(page.scanner, scanner::kFeederFlags, flags);
      Put(page.scanner, scanner::kMainStatus, flags & 0x30);
      AddCall(page, HostAction::kGetOptionStatus, 0);
      AddCall(page, HostAction::kGetScanPaperSize, 0);
      AddCall(page, HostAction::kEnableOption, 0, 2);
      AddCall(page, HostAction::kEject);
      seeds.push_back(page);
    }
  }
}

// A block that fails, and a status behind it.
void AddFailedBlocks(std::vector<Conversation>& seeds) {
  for (const std::uint16_t status : std::array<std::uint16_t, 4>{0x80, 0x40, 0x02, 0x00}) {
    for (std::uint8_t skipped = 0; skipped < 4; ++skipped) {
      Conversation failed = WideScan();
      AddCall(failed, HostAction::kScan, 5, 3);
      AddCall(failed, HostAction::kGetOptionStatus, 2);
      AddFault(failed, Moment::kBlock, 1, FaultKind::kByte, 0, 0x80);
      AddFault(failed, Moment::kBlockHeader, 1, FaultKind::kWord, 4, 0);
      AddFault(failed, Moment::kStatus, skipped, FaultKind::kByte, 0, status);
      seeds.push_back(failed);
    }
  }
}

void AddShortReplies(std::vector<Conversation>& seeds) {
  constexpr std::array<std::uint16_t, 7> kCounts{0, 1, 9, 150, 151, 400, 0x8000};
  constexpr std::array kReplies{Moment::kLevel, Moment::kProduct, Moment::kStatus, Moment::kFocus};
  for (const Moment moment : kReplies) {
    for (const std::uint16_t count : kCounts) {
      Conversation conversation = WithoutCalls({2, 2, 0, 0});
      AddCall(conversation, HostAction::kSetFocus, 1, 2);
      AddCall(conversation, HostAction::kGetOptionStatus, 1);
      AddCall(conversation, HostAction::kScan, 2, kSeedRows);
      AddFault(conversation, moment, 0, FaultKind::kWord, 2, count);
      AddFault(conversation, moment, 0, FaultKind::kByte, 1, 0x80);
      seeds.push_back(conversation);
    }
  }
}

// A further open, or a failure, at each transfer of an open; then a focus position, and a refusal
// of what is sent.
void AddOpens(std::vector<Conversation>& seeds) {
  for (std::uint8_t skipped = 0; skipped < 12; ++skipped) {
    for (const Moment moment : {Moment::kWrite, Moment::kRead}) {
      for (const FaultKind kind : {FaultKind::kCallWithin, FaultKind::kFailure}) {
        Conversation conversation = WithoutCalls({2, 2, 0, 0});
        AddCall(conversation, HostAction::kOpen);
        AddCall(conversation, HostAction::kSetFocus, 0, 2);
        AddCall(conversation, HostAction::kScan, 2, kSeedRows);
        AddFault(conversation, moment, skipped, kind);
        AddFault(conversation, Moment::kAcknowledge, skipped, FaultKind::kByte, 0, 0x15);
        seeds.push_back(conversation);
      }
    }
  }
}

// A cancel of a feeder's page amid its blocks, and a failure to take it or to eject the page.
void AddCancelledPages(std::vector<Conversation>& seeds) {
  for (std::uint8_t skipped = 0; skipped < 8; ++skipped) {
    Conversation cancelled = WideScan();
    Put(cancelled.scanner, scanner::kFeederStatus, 0x80);
    Put(cancelled.scanner, scanner::kFeederWidth, 16000);
    Put(cancelled.host, host::kScanSource, skipped % 2);
    AddCall(cancelled, HostAction::kSetUp, 5);
    AddCall(cancelled, HostAction::kAcquire, 2);
    AddCall(cancelled, HostAction::kAbort);
    AddCall(cancelled, HostAction::kAcquire, 5);
    AddFault(cancelled, Moment::kBlockAnswer, skipped / 2, FaultKind::kFailure);
    seeds.push_back(cancelled);
  }
}

// A call, or a failure, at one transfer after the other of an abort amid several blocks.
void AddEachTransfer(std::vector<Conversation>& seeds) {
  constexpr std::array kActions{HostAction::kClose, HostAction::kSetUp, HostAction::kOpen,
                                HostAction::kAbort, HostAction::kSetFocus};
  for (std::uint8_t skipped = 0; skipped < 110; ++skipped) {
    for (const Moment moment : {Moment::kWrite, Moment::kRead}) {
      Conversation within = WideScan();
      AddCall(within, HostAction::kSetUp, 5);
      AddCall(within, HostAction::kAcquire, 5);
      AddCall(within, HostAction::kAbort);
      AddFault(within, moment, skipped, FaultKind::kFailure);
      seeds.push_back(within);
      within.calls.Insert(2, within.calls.items[2]);
      Put(within.calls.items[2], host_call::kWhat,
          static_cast<std::uint8_t>(kActions[skipped % kActions.size()]));
      Put(within.faults.items[0], fault::kKind, static_cast<std::uint8_t>(FaultKind::kCallWithin));
      seeds.push_back(within);
    }
  }
}

}  // namespace

void AddCornerSeeds(std::vector<Conversation>& seeds) {
  AddRecords(seeds);
  AddWideBeds(seeds);
  AddCentredPage(seeds);
  AddPageEnds(seeds);
  AddFailedBlocks(seeds);
  AddShortReplies(seeds);
  AddOpens(seeds);
  AddCancelledPages(seeds);
  AddEachTransfer(seeds);
}

}  // namespace pmddb832::fuzz
