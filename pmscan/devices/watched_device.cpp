#include "pmscan/devices/watched_device.h"

#include <span>

#include "capture/decode/result_words.h"
#include "wire/command_table.h"

namespace pmscan {
namespace {

// Empty for bytes that are no command.
std::string CommandWords(std::span<const std::uint8_t> bytes) {
  const pmddb832::CommandShape* const command = pmddb832::FindCommand(bytes);
  if (command == nullptr) return {};
  return (command->prefix == pmddb832::kEsc ? "ESC " : "FS ") +
         std::string(1, static_cast<char>(command->letter)) + " " + std::string(command->name);
}

}  // namespace

std::int32_t WatchedDevice::RawReadData(void* buffer, std::uint32_t* byteCount, void* overlapped) {
  const std::uint32_t wanted = *byteCount;
  const std::int32_t result = device_.RawReadData(buffer, byteCount, overlapped);
  Note(result, "read", wanted);
  return result;
}

std::int32_t WatchedDevice::RawWriteData(void* buffer, std::uint32_t byteCount, void* overlapped) {
  const std::span bytes(static_cast<const std::uint8_t*>(buffer), byteCount);
  if (std::string words = CommandWords(bytes); !words.empty()) command_ = std::move(words);
  const std::int32_t result = device_.RawWriteData(buffer, byteCount, overlapped);
  Note(result, "write", byteCount);
  return result;
}

void WatchedDevice::Note(std::int32_t result, const char* kind, std::uint32_t bytes) {
  const std::uint32_t number = transfers_++;
  if (result >= 0 || !firstFailure_.empty()) return;
  firstFailure_ = "transfer " + std::to_string(number) + ", a " + kind + " of " +
                  std::to_string(bytes) + " bytes" +
                  (command_.empty() ? "" : " behind " + command_) + ", failed with " +
                  capture::ResultText(result);
}

}  // namespace pmscan
