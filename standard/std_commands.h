#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

#include "transport/general_cmd.h"
#include "wire/command_level.h"
#include "wire/status_reply.h"

// The commands of the standard set. Results are 1 for success and 0 for failure.
namespace pmddb832::Scmdnt {

// Send ESC and the letter, and behind its acknowledge the parameter block: one byte; two; a prefix
// byte (none with kNoPrefix) and a table; two and four 16-bit numbers.
std::uint32_t SendParam2(GeneralCmd& scanner, Call& call, std::uint8_t letter,
                         std::uint8_t parameter);
std::uint32_t SendParam3(GeneralCmd& scanner, Call& call, std::uint8_t letter, std::uint8_t first,
                         std::uint8_t second);
std::uint32_t SendParam4(GeneralCmd& scanner, Call& call, std::uint8_t letter, std::uint8_t prefix,
                         std::span<const std::uint8_t> data);
std::uint32_t SendParamW3(GeneralCmd& scanner, Call& call, std::uint8_t letter, std::uint16_t first,
                          std::uint16_t second);
std::uint32_t SendParamW5(GeneralCmd& scanner, Call& call, std::uint8_t letter,
                          const std::array<std::uint16_t, 4>& values);

// Sends ESC and the letter, and reads the information reply into the buffer: its data bytes, or
// nothing when it did not come, did not start with STX (kUnreadable then) or is longer than the
// buffer.
std::optional<std::span<const std::uint8_t>> Inquire(GeneralCmd& scanner, Call& call,
                                                     std::uint8_t letter, ReplyBuffer& buffer);

// Reads the status, header first. Scanners of a level without it are not asked: their status is 0.
std::uint32_t GetStatusNoE(GeneralCmd& scanner, Call& call, const LevelTraits& level,
                           StatusReply& destination);

// Whether a scan may start now. Else the last error is kWarmingUp or kScannerError.
std::uint32_t CheckWarmup(GeneralCmd& scanner, Call& call, const LevelTraits& level,
                          StatusReply& reply);

}  // namespace pmddb832::Scmdnt
