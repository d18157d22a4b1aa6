#include "capture/decode/decode_replies.h"

#include <algorithm>
#include <array>

#include "wire/block_header.h"
#include "wire/focus_reply.h"
#include "wire/identity_block.h"
#include "wire/identity_reply.h"
#include "wire/product_reply.h"
#include "wire/protocol_bytes.h"
#include "wire/status_block.h"
#include "wire/status_reply.h"
#include "wire/transfer_header.h"

namespace capture {
namespace {

using Bytes = std::span<const std::uint8_t>;
using Fields = std::span<const pmddb832::NamedField>;

constexpr std::size_t kHeaderBytes = sizeof(pmddb832::ReplyHeader);
constexpr std::array kLevelStatusNames{
    pmddb832::ValueName{0x02, "knows the extended commands"},
};
constexpr std::array kLevelFields{
    pmddb832::NamedFlags("header status", pmddb832::kReplyStatus, kLevelStatusNames),
};

struct ReplyRow {
  ReplyKind kind;
  std::size_t firstRead;
  bool isInformation;  // a header that declares the data behind it
  bool startsWithStx;
  Fields fields;
};

// clang-format off
constexpr std::array kReplies{
    ReplyRow{ReplyKind::kAcknowledge, 1, false, false, {}},
    ReplyRow{ReplyKind::kLevel, kHeaderBytes, true, true, kLevelFields},
    ReplyRow{ReplyKind::kProduct, kHeaderBytes, true, true, pmddb832::product_reply::kFields},
    ReplyRow{ReplyKind::kStatusReply, kHeaderBytes, true, true, pmddb832::status_reply::kFields},
    ReplyRow{ReplyKind::kFocus, kHeaderBytes, true, true, pmddb832::focus_reply::kFields},
    ReplyRow{ReplyKind::kHeaderOnly, kHeaderBytes, false, true, {}},
    ReplyRow{ReplyKind::kIdentityBlock, sizeof(pmddb832::IdentityBlock), false, false,
             pmddb832::identity::kFields},
    ReplyRow{ReplyKind::kStatusBlock, sizeof(pmddb832::StatusBlock), false, false,
             pmddb832::status::kFields},
    ReplyRow{ReplyKind::kTransferHeader, sizeof(pmddb832::TransferHeader), false, true,
             pmddb832::transfer::kFields},
    ReplyRow{ReplyKind::kBlockHeader, sizeof(pmddb832::BlockHeader), false, true,
             pmddb832::block::kFields},
};
// clang-format on

const ReplyRow& RowOf(ReplyKind kind) {
  return *std::find_if(kReplies.begin(), kReplies.end(),
                       [kind](const ReplyRow& row) { return row.kind == kind; });
}

bool IsStartByte(const pmddb832::NamedField& field) {
  return field.names.data() == pmddb832::names::kStx.data();
}

std::string ResolutionsText(const pmddb832::Identity& identity) {
  std::string text;
  for (std::size_t i = 0; i < identity.resolutionCount; ++i) {
    text.append(i == 0 ? "" : ", ").append(std::to_string(identity.resolutions[i]));
  }
  return text + " dpi";
}

void DescribeLevel(Bytes data, std::vector<FieldRow>& rows) {
  const std::optional<pmddb832::Identity> identity = pmddb832::DecodeIdentity(data);
  if (!identity.has_value()) {
    rows.push_back({"data", "not one resolution in " + Counted(data.size(), "byte"), true});
    return;
  }
  const std::string level{'"', identity->levelLetter, identity->levelDigit, '"'};
  rows.push_back({"command level", level});
  rows.push_back({"resolutions", ResolutionsText(*identity)});
  rows.push_back({"largest area", std::to_string(identity->flatbed.width) + " x " +
                                      std::to_string(identity->flatbed.height) + " pixels"});
}

// The start byte is worth a word only where it is wrong.
std::vector<FieldRow> FieldsBehindStart(const ReplyRow& row, Bytes reply) {
  std::vector<FieldRow> rows;
  const bool isSpoiled = row.startsWithStx && !reply.empty() && reply[0] != pmddb832::kStx;
  if (isSpoiled) {
    rows.push_back({"start byte", HexNumber(reply[0]) + " where STX (2) was expected", true});
  }
  const bool hasStart = !row.fields.empty() && IsStartByte(row.fields.front());
  const Fields fields = hasStart ? row.fields.subspan(1) : row.fields;
  const std::vector<FieldRow> described = DescribeFields(fields, reply);
  rows.insert(rows.end(), described.begin(), described.end());
  return rows;
}

}  // namespace

FieldRow DescribeAcknowledge(std::uint8_t byte) {
  if (byte == pmddb832::kAck) return {"answer", "ACK"};
  const std::optional<std::string> name = ControlName(byte);
  if (name == "NAK") return {"answer", "NAK", true};
  return {"answer", HexNumber(byte) + ", neither ACK nor NAK", true};
}

std::vector<FieldRow> DescribeReply(ReplyKind kind, Bytes reply) {
  if (kind == ReplyKind::kAcknowledge) {
    if (reply.empty()) return {};
    return {DescribeAcknowledge(reply[0])};
  }
  const ReplyRow& row = RowOf(kind);
  std::vector<FieldRow> rows = FieldsBehindStart(row, reply);
  if (kind == ReplyKind::kHeaderOnly && reply.size() > 1) {
    rows.push_back({"header status", HexNumber(reply[1])});
  }
  if (kind == ReplyKind::kLevel && reply.size() > kHeaderBytes) {
    DescribeLevel(reply.subspan(kHeaderBytes), rows);
  }
  return rows;
}

Fields ReplyFields(ReplyKind kind) {
  return RowOf(kind).fields;
}

std::size_t FirstReadBytes(ReplyKind kind) {
  return RowOf(kind).firstRead;
}

std::size_t DeclaredDataBytes(ReplyKind kind, Bytes header) {
  if (!RowOf(kind).isInformation || header.size() < kHeaderBytes) return 0;
  if (header[0] != pmddb832::kStx) return 0;
  return pmddb832::GetLittleEndian<std::uint16_t>(header.subspan<2, 2>());
}

}  // namespace capture
