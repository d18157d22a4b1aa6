#include "tests/wireshark/decoded_packets.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <map>
#include <span>
#include <variant>

#include "capture/decode/decode_commands.h"
#include "capture/decode/decode_narrator.h"
#include "wire/identity_reply.h"
#include "wire/reply_shapes.h"

namespace pmddb832::tests {
namespace {

using capture::Part;
using capture::Transfer;
using Bytes = std::span<const std::uint8_t>;
using Told = std::map<std::string, std::string>;  // by filter name

// "scan area" as a part of a filter's name.
std::string Slug(std::string_view text) {
  std::string slug;
  for (const char letter : text) {
    const bool isWord = std::isalnum(static_cast<unsigned char>(letter)) != 0;
    if (isWord) {
      slug += static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    } else if (!slug.ends_with('_')) {
      slug += '_';
    }
  }
  return slug;
}

std::string Filter(std::string_view block, std::string_view field) {
  return "pmddb832." + Slug(block) + "." + Slug(field);
}

std::string Hex(std::uint32_t value, std::size_t width) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "0x%0*x", static_cast<int>(2 * width),
                static_cast<unsigned>(value));
  return text.data();
}

std::string PlainText(Bytes bytes) {
  std::string text(bytes.begin(), bytes.end());
  const std::size_t last = text.find_last_not_of(std::string_view("\0 ", 2));
  text.resize(last == std::string::npos ? 0 : last + 1);
  const bool isPlain = std::all_of(text.begin(), text.end(), [](char letter) {
    return letter >= ' ' && letter <= '~' && letter != '|' && letter != '\\';
  });
  return isPlain ? text : kUnprintable;
}

std::string Raw(const NamedField& field, Bytes bytes) {
  if (field.shape == FieldShape::kText) return PlainText(bytes);
  std::uint32_t value = 0;
  for (std::size_t i = bytes.size(); i-- > 0;) value = value << 8 | bytes[i];
  if (field.shape == FieldShape::kNumber) return std::to_string(value);
  if (field.shape != FieldShape::kSigned) return Hex(value, field.width);
  return std::to_string(static_cast<std::int8_t>(value));
}

void Tell(Told& told, std::string_view block, std::span<const NamedField> fields, Bytes bytes) {
  for (const NamedField& field : fields) {
    if (field.offset + field.width > bytes.size()) continue;
    told[Filter(block, field.name)] = Raw(field, bytes.subspan(field.offset, field.width));
  }
}

void TellLevel(Told& told, Bytes data) {
  const auto identity = DecodeIdentity(data);
  if (!identity) return;
  const auto resolutions = std::span(identity->resolutions).first(identity->resolutionCount);
  std::string list;
  for (const std::uint16_t resolution : resolutions) {
    list += (list.empty() ? "" : ",") + std::to_string(resolution);
  }
  told["pmddb832.level.command_level"] = PlainText(data.first<2>());
  told["pmddb832.level.resolution"] = list;
  told["pmddb832.level.width"] = std::to_string(identity->flatbed.width);
  told["pmddb832.level.height"] = std::to_string(identity->flatbed.height);
}

void TellReply(Told& told, ReplyKind kind, Bytes reply) {
  const ReplyShape& shape = ReplyShapeOf(kind);
  Tell(told, shape.name, shape.fields, reply);
  const bool hasData = reply.size() > sizeof(ReplyHeader);
  if (kind == ReplyKind::kLevel && hasData) TellLevel(told, reply.subspan(sizeof(ReplyHeader)));
}

void TellBlock(Told& told, const capture::PictureBlock& block) {
  told["pmddb832.block.number"] = std::to_string(block.number);
  if (block.count != 0) told["pmddb832.block.count"] = std::to_string(block.count);
  if (block.lines != 0) told["pmddb832.block.lines"] = std::to_string(block.lines);
  told["pmddb832.block.bytes"] = std::to_string(block.bytes);
  told["pmddb832.block.status"] = Hex(block.status, 1);
}

// Decode names control bytes and tells letters also where nothing asked for them.
void TellWrite(Told& told, Part part, Bytes bytes, const CommandShape* command) {
  const bool isControl = bytes.size() == 1 && capture::ControlName(bytes[0]).has_value();
  if (part == Part::kCommand || part == Part::kUnknown) {
    told["pmddb832.command"] = Hex(static_cast<std::uint32_t>(bytes[0] << 8 | bytes[1]), 2);
  } else if (part == Part::kParameters) {
    Tell(told, command->name, command->parameters, bytes);
  } else if (isControl) {
    told["pmddb832.control"] = Hex(bytes[0], 1);
  }
}

// Decode tells a block's header with the block, and the dissector as soon as it is there.
void TellRead(Told& told, Part part, const Transfer& transfer, const capture::Conversation& said) {
  const Bytes bytes = transfer.Kept();
  if (transfer.result < 0 || transfer.delivered == 0) return;
  if (part == Part::kBlock) {
    TellBlock(told, said.Picture()->Block());
  } else if (part == Part::kBlockHeader) {
    TellReply(told, ReplyKind::kBlockHeader, bytes);
  } else if (part == Part::kAcknowledge && !bytes.empty()) {
    told["pmddb832.answer"] = Hex(bytes[0], 1);
  } else if (part == Part::kReply && !bytes.empty() && said.IsWhole()) {
    TellReply(told, said.Command()->reply, said.Message());
  }
}

// Takes the entries as decode does: what is said in one call belongs to no other.
class Decoding {
 public:
  void operator()(const capture::CallBegin&) { Close(); }
  void operator()(const capture::CallEnd&) { Close(); }
  void operator()(const capture::SettingsChange&) {}
  void operator()(const Transfer& transfer) {
    const Part part = narrator_.Take(transfer, 0);
    Told told;
    if (transfer.direction == capture::Direction::kToScanner) {
      TellWrite(told, part, transfer.Kept(), narrator_.Followed().Command());
    } else {
      TellRead(told, part, transfer, narrator_.Followed());
    }
    DecodedPacket packet;
    for (const std::string& field : DecodedFields()) packet.fields.push_back(told[field]);
    NoteTrouble(packet);
    packets.push_back(packet);
  }

  std::vector<DecodedPacket> packets;

 private:
  void Close() {
    narrator_.Release();
    exchanges_ = 0;
  }
  // A copy is asked, as the narrator would end its exchange.
  void NoteTrouble(DecodedPacket& packet) {
    const std::vector<capture::Exchange> exchanges = capture::Narrator(narrator_).Release();
    const bool isNew = exchanges.size() > exchanges_;
    packet.isBehindTrouble = !isNew && hadTrouble_;
    hadTrouble_ = packet.hasTrouble = exchanges.back().hasTrouble;
    exchanges_ = exchanges.size();
  }

  capture::Narrator narrator_;
  std::size_t exchanges_ = 0;
  bool hadTrouble_ = false;
};

std::vector<std::string> AllFields() {
  std::vector<std::string> all{"pmddb832.command", "pmddb832.control", "pmddb832.answer"};
  for (const CommandShape& command : kCommandTable) {
    for (const NamedField& field : command.parameters) {
      all.push_back(Filter(command.name, field.name));
    }
  }
  for (const ReplyShape& reply : kReplyShapes) {
    for (const NamedField& field : reply.fields) all.push_back(Filter(reply.name, field.name));
  }
  for (const char* name : {"command_level", "resolution", "width", "height"}) {
    all.push_back(Filter("level", name));
  }
  for (const char* name : {"number", "count", "lines", "bytes", "status"}) {
    all.push_back(Filter("block", name));
  }
  return all;
}

}  // namespace

const std::vector<std::string>& DecodedFields() {
  static const std::vector<std::string> kAll = AllFields();
  return kAll;
}

std::vector<DecodedPacket> DecodedPackets(const capture::Capture& capture) {
  Decoding decoding;
  for (const capture::Entry& entry : capture.entries) std::visit(decoding, entry);
  return decoding.packets;
}

}  // namespace pmddb832::tests
