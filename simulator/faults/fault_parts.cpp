#include "simulator/faults/fault_parts.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "wire/command_table.h"
#include "wire/protocol_bytes.h"
#include "wire/reply_shapes.h"

namespace simulator {
namespace {

constexpr std::array<std::string_view, 3> kBytes{"FF", "EM", "CAN"};

bool IsByte(std::string_view command) {
  return std::find(kBytes.begin(), kBytes.end(), command) != kBytes.end();
}

// Null for commands of one byte, and for those that are never sent.
const pmddb832::CommandShape* ShapeOf(std::string_view command) {
  if (IsByte(command) || command.empty()) return nullptr;
  const std::array<std::uint8_t, 2> bytes{
      command.starts_with("ESC ") ? pmddb832::kEsc : pmddb832::kFs,
      static_cast<std::uint8_t>(command.back())};
  return pmddb832::FindCommand(bytes);
}

}  // namespace

bool IsSent(std::string_view command) {
  return IsByte(command) || ShapeOf(command) != nullptr;
}

bool HasPart(std::string_view command, std::string_view part) {
  if (part == "command" || part == "reply") return true;
  const pmddb832::CommandShape* const shape = ShapeOf(command);
  if (shape == nullptr) return false;
  if (part == "parameters" || part == "result") return shape->parameterBytes > 0;
  if (part == "data") return pmddb832::ReplyShapeOf(shape->reply).declaresData;
  return shape->reply == pmddb832::ReplyKind::kTransferHeader ||
         shape->reply == pmddb832::ReplyKind::kBlockHeader;
}

}  // namespace simulator
