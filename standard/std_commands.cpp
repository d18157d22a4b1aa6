#include "standard/std_commands.h"

#include "platform/trace.h"
#include "wire/commands.h"
#include "wire/parameter_fields.h"
#include "wire/protocol_bytes.h"

namespace pmddb832::Scmdnt {

std::uint32_t SendParam2(GeneralCmd& scanner, Call& call, std::uint8_t letter,
                         std::uint8_t parameter) {
  const TraceScope trace{"Scmdnt::SendParam2"};
  return SendEscBlock(scanner, call, letter, {&parameter, 1});
}

std::uint32_t SendParam3(GeneralCmd& scanner, Call& call, std::uint8_t letter, std::uint8_t first,
                         std::uint8_t second) {
  const TraceScope trace{"Scmdnt::SendParam3"};
  return SendEscBlock(scanner, call, letter, std::array{first, second});
}

std::uint32_t SendParam4(GeneralCmd& scanner, Call& call, std::uint8_t letter, std::uint8_t prefix,
                         std::span<const std::uint8_t> data) {
  const TraceScope trace{"Scmdnt::SendParam4"};
  return SendEscTable(scanner, call, letter, prefix, data);
}

std::uint32_t SendParamW3(GeneralCmd& scanner, Call& call, std::uint8_t letter, std::uint16_t first,
                          std::uint16_t second) {
  const TraceScope trace{"Scmdnt::SendParamW3"};
  std::array<std::uint8_t, 4> block;
  Put(block, standard_parameter::kFirstWord, first);
  Put(block, standard_parameter::kSecondWord, second);
  return SendEscBlock(scanner, call, letter, block);
}

std::uint32_t SendParamW5(GeneralCmd& scanner, Call& call, std::uint8_t letter,
                          const std::array<std::uint16_t, 4>& values) {
  const TraceScope trace{"Scmdnt::SendParamW5"};
  std::array<std::uint8_t, 8> block;
  Put(block, standard_parameter::kFirstWord, values[0]);
  Put(block, standard_parameter::kSecondWord, values[1]);
  Put(block, standard_parameter::kThirdWord, values[2]);
  Put(block, standard_parameter::kFourthWord, values[3]);
  return SendEscBlock(scanner, call, letter, block);
}

std::optional<std::span<const std::uint8_t>> Inquire(GeneralCmd& scanner, Call& call,
                                                     std::uint8_t letter, ReplyBuffer& buffer) {
  ReplyHeader header{};
  if (scanner.SendEscCode(call, letter) == 0 || scanner.Wire()->Read(call, header) == 0) {
    return std::nullopt;
  }
  if (Get(header, kReplyStx) != kStx) {
    scanner.Fail(kUnreadable);
    return std::nullopt;
  }
  const std::uint16_t count = Get(header, kReplyCount);
  if (count > buffer.size()) return std::nullopt;
  const std::span data = std::span{buffer}.first(count);
  if (scanner.Wire()->Read(call, data) == 0) return std::nullopt;
  return data;
}

std::uint32_t GetStatusNoE(GeneralCmd& scanner, Call& call, const LevelTraits& level,
                           StatusReply& destination) {
  const TraceScope trace{"Scmdnt::GetStatusNoE"};
  destination.fill(0);
  if (!level.status) return 1;
  const std::span reply{destination};
  constexpr std::size_t kHeaderBytes = sizeof(ReplyHeader);
  if (scanner.SendEscCode(call, esc::kStatus) == 0) return 0;
  if (scanner.Wire()->Read(call, reply.first<kHeaderBytes>()) == 0) return 0;
  if (Get(destination, kReplyStx) != kStx) return 0;
  const std::span data = reply.subspan<kHeaderBytes>();
  const std::uint16_t count = Get(destination, kReplyCount);
  return count > data.size() ? 0 : scanner.Wire()->Read(call, data.first(count));
}

std::uint32_t CheckWarmup(GeneralCmd& scanner, Call& call, const LevelTraits& level,
                          StatusReply& reply) {
  const TraceScope trace{"Scmdnt::CheckWarmup"};
  const bool told = GetStatusNoE(scanner, call, level, reply) != 0;
  const ErrorCode condition =
      told ? status::StartCondition(Get(reply, status_reply::kMain)) : kScannerError;
  if (condition == kNoError) return 1;
  scanner.Fail(condition);
  return 0;
}

}  // namespace pmddb832::Scmdnt
