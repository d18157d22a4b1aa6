#pragma once

#include <cstdint>
#include <span>

#include "transport/general_cmd.h"
#include "wire/status_block.h"

// The commands of the extended set. Results are 1 for success and 0 for failure.
namespace pmddb832::Extcmd {

// Sends FS and the letter. fs::kStart also moves the page in the feeder.
std::uint32_t SendFSCode(GeneralCmd& scanner, Call& call, std::uint8_t letter);

std::uint32_t GetStatusBuffer(GeneralCmd& scanner, Call& call, StatusBlock& destination);

// Send ESC and the letter with one parameter byte, or with a table; both must be acknowledged.
std::uint32_t SendESCOneParam(GeneralCmd& scanner, Call& call, std::uint8_t letter,
                              std::uint8_t parameter);
std::uint32_t SendCorrectionData(GeneralCmd& scanner, Call& call, std::uint8_t letter,
                                 std::uint8_t selector, std::span<const std::uint8_t> data);

// Whether a scan may start now. Else the last error is kWarmingUp or kScannerError.
std::uint32_t CheckWarmup(GeneralCmd& scanner, Call& call, StatusBlock& block);

}  // namespace pmddb832::Extcmd
