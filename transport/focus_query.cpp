#include "transport/focus_query.h"

#include <span>

#include "wire/commands.h"
#include "wire/focus.h"
#include "wire/focus_reply.h"
#include "wire/protocol_bytes.h"

namespace pmddb832 {
namespace {

// The data are read without the header.
constexpr std::size_t kOutcome = decltype(focus_reply::kOutcome)::kOffset - sizeof(ReplyHeader);
constexpr std::size_t kPosition = decltype(focus_reply::kPosition)::kOffset - sizeof(ReplyHeader);

}  // namespace

std::uint8_t ReadFocusPosition(GeneralCmd& scanner, Call& call, ReplyBuffer& buffer) {
  ReplyHeader header{};
  if (scanner.SendEscCode(call, esc::kFocusFound) == 0) return kFocusUnknown;
  if (scanner.Wire()->Read(call, header) == 0 || Get(header, kReplyStx) != kStx) {
    return kFocusUnknown;
  }
  const std::uint16_t count = Get(header, kReplyCount);
  if (count > buffer.size() || scanner.Wire()->Read(call, std::span{buffer}.first(count)) == 0) {
    return kFocusUnknown;
  }
  const bool told = count > kPosition && (buffer[kOutcome] & focus_reply::kNotFound) == 0;
  return told ? buffer[kPosition] : kFocusUnknown;
}

}  // namespace pmddb832
