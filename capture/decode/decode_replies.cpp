#include "capture/decode/decode_replies.h"

#include "capture/decode/decode_commands.h"
#include "capture/file/number_text.h"
#include "wire/identity_reply.h"
#include "wire/reply_shapes.h"

namespace capture {
namespace {

using Bytes = std::span<const std::uint8_t>;
using Fields = std::span<const pmddb832::NamedField>;
using pmddb832::ReplyKind;
using pmddb832::ReplyShape;

bool IsStartByte(const pmddb832::NamedField& field) {
  return field.names.data() == pmddb832::names::kStx.data();
}

std::string ResolutionsText(const pmddb832::StandardIdentity& identity) {
  std::string text;
  for (std::size_t i = 0; i < identity.resolutionCount; ++i) {
    text.append(i == 0 ? "" : ", ").append(std::to_string(identity.resolutions[i]));
  }
  return text + " dpi";
}

void DescribeLevel(Bytes data, std::vector<FieldRow>& rows) {
  const std::optional<pmddb832::StandardIdentity> identity = pmddb832::DecodeIdentity(data);
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
std::vector<FieldRow> FieldsBehindStart(const ReplyShape& row, Bytes reply) {
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

// "status ok", "status ok, last block", "status error (0x80)".
FieldRow StatusRow(std::uint8_t status, std::span<const pmddb832::ValueName> names) {
  if (status == 0) return {"status", "status ok"};
  const pmddb832::NamedField field =
      pmddb832::NamedFlags("status", pmddb832::Field<std::uint8_t, 0>{}, names);
  FieldRow row = DescribeFields(std::span(&field, 1), std::span(&status, 1)).front();
  row.value = (row.isTrouble ? "status " : "status ok, ") + row.value;
  return row;
}

}  // namespace

FieldRow DescribeAcknowledge(std::uint8_t byte) {
  if (byte == pmddb832::kAck) return {"answer", "ACK"};
  if (byte == pmddb832::kNak) return {"answer", "NAK", true};
  return {"answer", HexNumber(byte) + ", neither ACK nor NAK", true};
}

std::vector<FieldRow> DescribeReply(ReplyKind kind, Bytes reply) {
  const ReplyShape& row = pmddb832::ReplyShapeOf(kind);
  std::vector<FieldRow> rows = FieldsBehindStart(row, reply);
  if (kind == ReplyKind::kHeaderOnly && reply.size() > 1) {
    rows.push_back({"header status", HexNumber(reply[1])});
  }
  if (kind == ReplyKind::kLevel && reply.size() > sizeof(pmddb832::ReplyHeader)) {
    DescribeLevel(reply.subspan(sizeof(pmddb832::ReplyHeader)), rows);
  }
  return rows;
}

std::string DescribePlace(const PictureBlock& block) {
  const std::string of = block.count == 0 ? "" : " of " + std::to_string(block.count);
  return "block " + std::to_string(block.number) + of;
}

std::vector<FieldRow> DescribeBlock(const PictureBlock& block) {
  std::vector<FieldRow> rows;
  if (block.lines != 0) rows.push_back({"lines", Counted(block.lines, "line")});
  rows.push_back({"bytes", Counted(block.bytes, "byte")});
  rows.push_back(StatusRow(block.status, block.statusNames));
  if (block.bytes != block.announcedBytes) {
    rows.push_back(
        {"length", "the header announced " + Counted(block.announcedBytes, "byte"), true});
  }
  return rows;
}

std::string DescribeBadHeader(Bytes header) {
  const bool hasStx = !header.empty() && header[0] == pmddb832::kStx;
  return hasStx ? "header that announces no lines" : "header " + HexText(header) + " without STX";
}

}  // namespace capture
