#include "pmscan/captures/dry_run.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <span>

namespace pmscan {
namespace {

constexpr auto kAborted = static_cast<std::int32_t>(0x80004004);
constexpr char kStartLetter = 'G';
constexpr std::size_t kBytesALine = 16;

using Bytes = std::span<const std::uint8_t>;

// Whether the bytes are parameters of the last command.
bool AreParameters(const std::vector<SentCommand>& sent) {
  return !sent.empty() && sent.back().row != nullptr &&
         sent.back().parameters.size() < sent.back().row->parameterBytes;
}

void Keep(std::vector<SentCommand>& sent, Bytes bytes) {
  if (AreParameters(sent)) {
    std::vector<std::uint8_t>& parameters = sent.back().parameters;
    parameters.insert(parameters.end(), bytes.begin(), bytes.end());
  } else {
    sent.push_back({{bytes.begin(), bytes.end()}, {}, capture::FindCommand(bytes)});
  }
}

bool IsStart(const SentCommand& command) {
  return command.row != nullptr && command.row->letter == kStartLetter;
}

void AddHexLines(std::string& text, const std::vector<std::uint8_t>& bytes) {
  for (std::size_t i = 0; i < bytes.size(); i += kBytesALine) {
    const auto first = bytes.begin() + static_cast<std::ptrdiff_t>(i);
    const std::size_t count = std::min(kBytesALine, bytes.size() - i);
    const std::vector<std::uint8_t> line(first, first + static_cast<std::ptrdiff_t>(count));
    text += "  " + AllHex(line) + "\n";
  }
}

void AddParameters(std::string& text, const SentCommand& command) {
  AddHexLines(text, command.parameters);
  for (const capture::FieldRow& row :
       capture::DescribeParameters(*command.row, command.parameters)) {
    std::string name = row.name;
    name.resize(std::max<std::size_t>(name.size() + 1, 20), ' ');
    text += "    " + name + row.value + "\n";
  }
}

}  // namespace

std::int32_t DryRunDevice::RawReadData(void* buffer, std::uint32_t* byteCount, void* overlapped) {
  if (!hasStarted_) return device_.RawReadData(buffer, byteCount, overlapped);
  *byteCount = 0;
  return kAborted;
}

std::int32_t DryRunDevice::RawWriteData(void* buffer, std::uint32_t byteCount, void* overlapped) {
  if (hasStarted_) return kAborted;
  Keep(sent_, Bytes(static_cast<const std::uint8_t*>(buffer), byteCount));
  hasStarted_ = IsStart(sent_.back());
  return hasStarted_ ? kAborted : device_.RawWriteData(buffer, byteCount, overlapped);
}

std::string AllHex(const std::vector<std::uint8_t>& bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) {
    std::array<char, 4> digits{};
    std::snprintf(digits.data(), digits.size(), "%02X", byte);
    text.append(text.empty() ? "" : " ").append(digits.data());
  }
  return text;
}

std::string NameOf(const SentCommand& command) {
  if (command.row != nullptr) {
    return capture::Letters(*command.row) + " " + std::string(command.row->name);
  }
  if (command.bytes.size() != 1) return "bytes";
  return capture::ControlName(command.bytes[0]).value_or("byte");
}

std::string DryRunReport(const std::vector<SentCommand>& commands) {
  std::string text;
  for (const SentCommand& command : commands) {
    text += AllHex(command.bytes) + "  " + NameOf(command) + "\n";
    if (!command.parameters.empty()) AddParameters(text, command);
  }
  return text;
}

Json DryRunJson(const std::vector<SentCommand>& commands) {
  Json json{{"commands", Json::array()}};
  for (const SentCommand& command : commands) {
    Json row{{"name", NameOf(command)}, {"bytes", AllHex(command.bytes)}};
    if (!command.parameters.empty()) {
      row["parameters"] = AllHex(command.parameters);
      for (const capture::FieldRow& field :
           capture::DescribeParameters(*command.row, command.parameters)) {
        row["fields"][field.name] = field.value;
      }
    }
    json["commands"].push_back(row);
  }
  return json;
}

}  // namespace pmscan
