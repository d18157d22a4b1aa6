#include "extended/ext_commands.h"

#include "platform/trace.h"
#include "wire/commands.h"

namespace pmddb832::Extcmd {

std::uint32_t SendFSCode(GeneralCmd& scanner, Call& call, std::uint8_t letter) {
  const TraceScope trace{"Extcmd::SendFSCode"};
  if (letter == fs::kStart) scanner.NoteScanStarted();
  return scanner.Wire()->SendFSCode(call, letter);
}

std::uint32_t GetStatusBuffer(GeneralCmd& scanner, Call& call, StatusBlock& destination) {
  const TraceScope trace{"Extcmd::GetStatusBuffer"};
  if (SendFSCode(scanner, call, fs::kStatus) == 0) return 0;
  return scanner.Wire()->Read(call, destination);
}

std::uint32_t SendESCOneParam(GeneralCmd& scanner, Call& call, std::uint8_t letter,
                              std::uint8_t parameter) {
  const TraceScope trace{"Extcmd::SendESCOneParam"};
  return SendEscBlock(scanner, call, letter, {&parameter, 1});
}

std::uint32_t SendCorrectionData(GeneralCmd& scanner, Call& call, std::uint8_t letter,
                                 std::uint8_t selector, std::span<const std::uint8_t> data) {
  const TraceScope trace{"Extcmd::SendCorrectionData"};
  return SendEscTable(scanner, call, letter, selector, data);
}

std::uint32_t CheckWarmup(GeneralCmd& scanner, Call& call, StatusBlock& block) {
  const TraceScope trace{"Extcmd::CheckWarmup"};
  if (GetStatusBuffer(scanner, call, block) == 0) {
    scanner.Fail(kScannerError);
    return 0;
  }
  const ErrorCode condition = status::StartCondition(Get(block, status::kMain));
  if (condition == kNoError) return 1;
  scanner.Fail(condition);
  return 0;
}

}  // namespace pmddb832::Extcmd
