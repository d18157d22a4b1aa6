#include "fuzz/seed_parts.h"

namespace pmddb832::fuzz {
namespace {

ScannerBlock MakeScanner() {
  ScannerBlock block{};
  Put(block, scanner::kFocusPosition, 0x42);
  Put(block, scanner::kResolutionCount, 3);
  Put(block, scanner::kMinimumResolution, 50);
  Put(block, scanner::kResolution, 600);
  Put(block, scanner::kMaximumResolution, 2400);
  Put(block, scanner::kFlatbedWidth, 8000);
  Put(block, scanner::kFlatbedHeight, 12000);
  Put(block, scanner::kFeederWidth, 5100);
  Put(block, scanner::kFeederHeight, 8400);
  Put(block, scanner::kTransparencyWidth, 3000);
  Put(block, scanner::kTransparencyHeight, 4000);
  return block;
}

HostBlock MakeHost(const SeedScan& scan) {
  HostBlock block{};
  Put(block, host::kPixelType, scan.pixelType);
  Put(block, host::kWidth, 41);
  Put(block, host::kHeight, 20);
  Put(block, host::kLeft, 8);
  Put(block, host::kTop, 5);
  Put(block, host::kOriginX, 2);
  Put(block, host::kOriginY, 1);
  Put(block, host::kResolution, 300);
  Put(block, host::kZoom, 100);
  Put(block, host::kThreshold, 0xFFFF);
  Put(block, host::kGamma, 100);
  Put(block, host::kScanFlags, scan.flags);
  Put(block, host::kScanSource, scan.source);
  Put(block, host::kDropoutChannel, 1);
  Put(block, host::kWhitePadding, 1);
  Put(block, host::kHalftone, 1);
  return block;
}

}  // namespace

void AddCall(Conversation& conversation, HostAction what, std::uint8_t argument,
             std::uint32_t value) {
  HostCall call{};
  Put(call, host_call::kWhat, static_cast<std::uint8_t>(what));
  Put(call, host_call::kArgument, argument);
  Put(call, host_call::kValue, value);
  conversation.calls.Add(call);
}

void AddFault(Conversation& conversation, Moment moment, std::uint8_t skipped, FaultKind kind,
              std::uint8_t place, std::uint16_t value) {
  Fault fault{};
  Put(fault, fault::kMoment, static_cast<std::uint8_t>(moment));
  Put(fault, fault::kSkipped, skipped);
  Put(fault, fault::kKind, static_cast<std::uint8_t>(kind));
  Put(fault, fault::kPlace, place);
  Put(fault, fault::kValue, value);
  conversation.faults.Add(fault);
}

Conversation WithoutCalls(const SeedScan& scan) {
  Conversation conversation;
  conversation.scanner = MakeScanner();
  conversation.host = MakeHost(scan);
  return conversation;
}

Conversation WholeScan(const SeedScan& scan) {
  Conversation conversation = WithoutCalls(scan);
  AddCall(conversation, HostAction::kScan, scan.outputFormat, kSeedRows);
  AddCall(conversation, HostAction::kGetScanError);
  return conversation;
}

Conversation WideScan() {
  Conversation conversation = WithoutCalls({5, 5, 0, 0});
  Put(conversation.host, host::kWidth, 4000);
  Put(conversation.host, host::kHeight, 9);
  return conversation;
}

}  // namespace pmddb832::fuzz
