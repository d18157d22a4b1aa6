#include "pmscan/devices/bed_teller.h"

#include <algorithm>

#include "wire/command_level.h"
#include "wire/commands.h"
#include "wire/halftone_codes.h"
#include "wire/identity_block.h"
#include "wire/protocol_bytes.h"

namespace pmscan {
namespace {

namespace identity = pmddb832::identity;

constexpr char kLevelWithoutBed = '3';
constexpr char kLevelWithBed = '4';
constexpr std::uint32_t kLargestBed = 0xFFFF;  // pixels at the basic resolution

bool TellsBed(const pmddb832::IdentityBlock& block) {
  return Get(block, identity::kFlatbedWidth) != 0 && Get(block, identity::kFlatbedHeight) != 0;
}

}  // namespace

void BedTeller::CorrectLevel(pmddb832::ScannerSettings& settings) const {
  if (!hasChanged_) return;
  settings.commandLevelText[1] = kLevelWithoutBed;
  settings.commandLevel = pmddb832::ExtendedLevelCode('B', kLevelWithoutBed);
  settings.levelGroup = pmddb832::TraitsOf(settings.commandLevel).group;
  settings.halftoneInfo = pmddb832::SupportedHalftones(kLevelWithoutBed);
}

std::int32_t BedTeller::RawReadData(void* buffer, std::uint32_t* byteCount, void* overlapped) {
  const std::int32_t result = device_.RawReadData(buffer, byteCount, overlapped);
  const bool isIdentity = isIdentityDue_ && result >= 0;
  isIdentityDue_ = false;
  if (isIdentity) Change(static_cast<std::uint8_t*>(buffer), *byteCount);
  return result;
}

std::int32_t BedTeller::RawWriteData(void* buffer, std::uint32_t byteCount, void* overlapped) {
  const auto* const bytes = static_cast<const std::uint8_t*>(buffer);
  isIdentityDue_ =
      isOn_ && byteCount == 2 && bytes[0] == pmddb832::kFs && bytes[1] == pmddb832::fs::kIdentity;
  return device_.RawWriteData(buffer, byteCount, overlapped);
}

void BedTeller::Change(std::uint8_t* bytes, std::uint32_t count) {
  pmddb832::IdentityBlock block{};
  if (count != block.size()) return;
  std::copy_n(bytes, count, block.begin());
  const bool isLowest = Get(block, identity::kLevelLetter) == 'B' &&
                        Get(block, identity::kLevelDigit) == kLevelWithoutBed;
  if (!isLowest) return;
  Put(block, identity::kLevelDigit, kLevelWithBed);
  if (!TellsBed(block)) {
    Put(block, identity::kFlatbedWidth, kLargestBed);
    Put(block, identity::kFlatbedHeight, kLargestBed);
  }
  std::copy_n(block.begin(), count, bytes);
  hasChanged_ = true;
}

}  // namespace pmscan
