#include "pmscan/captures/dry_run.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <span>

#include "capture/conversation/captured_conversation.h"
#include "capture/decode/decode_commands.h"

namespace pmscan {
namespace {

constexpr auto kAborted = static_cast<std::int32_t>(0x80004004);
constexpr std::size_t kBytesALine = 16;

using Bytes = std::span<const std::uint8_t>;
using pmddb832::CommandShape;
using pmddb832::ReplyKind;

// What the module sent: a command with its parameters, or bytes that are none.
struct SentCommand {
  std::vector<std::uint8_t> bytes;
  std::vector<std::uint8_t> parameters;
  const CommandShape* shape = nullptr;  // null for bytes that are no command
};

std::vector<SentCommand> SentIn(const capture::Capture& recording) {
  std::vector<SentCommand> sent;
  capture::Conversation conversation;
  for (const capture::Entry& entry : recording.entries) {
    const auto& transfer = std::get<capture::Transfer>(entry);
    const capture::Part part = Follow(conversation, transfer);
    if (transfer.direction == capture::Direction::kFromScanner) continue;
    if (part == capture::Part::kParameters) {
      sent.back().parameters = conversation.Message();
    } else {
      const bool isCommand = part == capture::Part::kCommand;
      sent.push_back({*transfer.bytes, {}, isCommand ? conversation.Command() : nullptr});
    }
  }
  return sent;
}

bool IsStart(const CommandShape& command) {
  return command.reply == ReplyKind::kTransferHeader || command.reply == ReplyKind::kBlockHeader;
}

// "1B 49 0A".
std::string AllHex(Bytes bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) {
    std::array<char, 4> digits{};
    std::snprintf(digits.data(), digits.size(), "%02X", byte);
    text.append(text.empty() ? "" : " ").append(digits.data());
  }
  return text;
}

// "ESC C colour mode"; the control byte's name, or "bytes" for what is no command.
std::string NameOf(const SentCommand& command) {
  if (command.shape != nullptr) return capture::NameOf(*command.shape);
  if (command.bytes.size() != 1) return "bytes";
  return capture::ControlName(command.bytes[0]).value_or("byte");
}

void AddHexLines(std::string& text, Bytes bytes) {
  for (; !bytes.empty(); bytes = bytes.subspan(std::min(kBytesALine, bytes.size()))) {
    text += "  " + AllHex(bytes.first(std::min(kBytesALine, bytes.size()))) + "\n";
  }
}

void AddParameters(std::string& text, const SentCommand& command) {
  AddHexLines(text, command.parameters);
  for (const capture::FieldRow& row :
       capture::DescribeParameters(*command.shape, command.parameters)) {
    std::string name = row.name;
    name.resize(std::max<std::size_t>(name.size() + 1, 20), ' ');
    text += "    " + name + row.value + "\n";
  }
}

}  // namespace

DryRunDevice::DryRunDevice(pmddb832::StillImageDevice& passedDevice)
    : recorder_([this](const capture::Entry& entry) { recording_.entries.push_back(entry); },
                [] { return 0; }, true),
      recorded_(passedDevice, recorder_) {}

std::int32_t DryRunDevice::RawReadData(void* buffer, std::uint32_t* byteCount, void* overlapped) {
  if (hasStarted_) {
    *byteCount = 0;
    return kAborted;
  }
  const std::int32_t result = recorded_.RawReadData(buffer, byteCount, overlapped);
  Follow(conversation_, std::get<capture::Transfer>(recording_.entries.back()));
  return result;
}

std::int32_t DryRunDevice::RawWriteData(void* buffer, std::uint32_t byteCount, void* overlapped) {
  if (hasStarted_) return kAborted;
  const Bytes bytes(static_cast<const std::uint8_t*>(buffer), byteCount);
  hasStarted_ =
      conversation_.Write(bytes) == capture::Part::kCommand && IsStart(*conversation_.Command());
  if (!hasStarted_) return recorded_.RawWriteData(buffer, byteCount, overlapped);
  recorder_.AddWrite(bytes, kAborted);
  return kAborted;
}

std::string DryRunReport(const capture::Capture& recording) {
  std::string text;
  for (const SentCommand& command : SentIn(recording)) {
    text += AllHex(command.bytes) + "  " + NameOf(command) + "\n";
    if (!command.parameters.empty()) AddParameters(text, command);
  }
  return text;
}

Json DryRunJson(const capture::Capture& recording) {
  Json json{{"commands", Json::array()}};
  for (const SentCommand& command : SentIn(recording)) {
    Json row{{"name", NameOf(command)}, {"bytes", AllHex(command.bytes)}};
    if (!command.parameters.empty()) {
      row["parameters"] = AllHex(command.parameters);
      for (const capture::FieldRow& field :
           capture::DescribeParameters(*command.shape, command.parameters)) {
        row["fields"][field.name] = field.value;
      }
    }
    json["commands"].push_back(row);
  }
  return json;
}

}  // namespace pmscan
