#include "transport/focus_query.h"

#include <array>
#include <span>

#include "wire/commands.h"
#include "wire/focus.h"
#include "wire/focus_reply.h"
#include "wire/protocol_bytes.h"
#include "wire/wire_block.h"

namespace pmddb832 {

std::uint8_t ReadFocusPosition(GeneralCmd& scanner, Call& call) {
  std::array<std::uint8_t, sizeof(ReplyHeader) + sizeof(ReplyBuffer)> reply{};
  const std::span header = std::span{reply}.first<sizeof(ReplyHeader)>();
  const std::span data = std::span{reply}.subspan<sizeof(ReplyHeader)>();
  if (scanner.SendEscCode(call, esc::kFocusFound) == 0) return kFocusUnknown;
  if (scanner.Wire()->Read(call, header) == 0 || Get(reply, kReplyStx) != kStx) {
    return kFocusUnknown;
  }
  const std::uint16_t count = Get(reply, kReplyCount);
  if (count > data.size() || scanner.Wire()->Read(call, data.first(count)) == 0) {
    return kFocusUnknown;
  }
  const bool told = count >= 2 && (Get(reply, focus_reply::kOutcome) & focus_reply::kNotFound) == 0;
  return told ? Get(reply, focus_reply::kPosition) : kFocusUnknown;
}

}  // namespace pmddb832
