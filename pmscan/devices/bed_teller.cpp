#include "pmscan/devices/bed_teller.h"

#include <algorithm>
#include <optional>

#include "wire/command_level.h"
#include "wire/commands.h"
#include "wire/halftone_codes.h"
#include "wire/identity_block.h"
#include "wire/identity_reply.h"
#include "wire/protocol_bytes.h"
#include "wire/status_reply.h"

namespace pmscan {
namespace {

namespace identity = pmddb832::identity;
namespace status_reply = pmddb832::status_reply;
using pmddb832::AreaSize;

constexpr char kLevelWithoutBed = '3';
constexpr char kLevelWithBed = '4';
constexpr std::uint32_t kMostPixels = 0xFFFF;

bool IsTold(const AreaSize& area) {
  return area.width != 0 && area.height != 0;
}

template <std::size_t width, std::size_t height>
void FillIn(pmddb832::IdentityBlock& block, pmddb832::Field<std::uint32_t, width> widthField,
            pmddb832::Field<std::uint32_t, height> heightField) {
  if (IsTold({Get(block, widthField), Get(block, heightField)})) return;
  Put(block, widthField, kMostPixels);
  Put(block, heightField, kMostPixels);
}

// With standard commands the module multiplies the width by resolution and zoom, and both numbers
// by 100 over the last resolution, of which 16 bits count: none may grow beyond its bits.
AreaSize LargestArea(std::uint32_t lastResolution) {
  constexpr std::uint32_t kWidestBed = 15;  // inches
  constexpr std::uint32_t kMostWidth = 53000;
  return {std::min(kWidestBed * lastResolution, kMostWidth),
          std::min(kMostPixels, kMostPixels * lastResolution / 100)};
}

// Of an area whose width and height are two bytes each, one behind the other.
void FillIn(std::span<std::uint8_t> data, std::size_t place, std::uint32_t lastResolution) {
  constexpr std::size_t kAreaBytes = 4;
  if (data.size() < place + kAreaBytes) return;
  const auto width = data.subspan(place).first<2>();
  const auto height = data.subspan(place + 2).first<2>();
  if (IsTold({pmddb832::GetLittleEndian<std::uint16_t>(width),
              pmddb832::GetLittleEndian<std::uint16_t>(height)})) {
    return;
  }
  const AreaSize largest = LargestArea(lastResolution);
  pmddb832::PutLittleEndian(width, static_cast<std::uint16_t>(largest.width));
  pmddb832::PutLittleEndian(height, static_cast<std::uint16_t>(largest.height));
}

}  // namespace

void BedTeller::CorrectLevel(pmddb832::ScannerSettings& settings) const {
  if (!hasRaisedLevel_) return;
  settings.commandLevelText[1] = kLevelWithoutBed;
  settings.commandLevel = pmddb832::ExtendedLevelCode('B', kLevelWithoutBed);
  settings.levelGroup = pmddb832::TraitsOf(settings.commandLevel).group;
  settings.halftoneInfo = pmddb832::SupportedHalftones(kLevelWithoutBed);
}

std::int32_t BedTeller::RawReadData(void* buffer, std::uint32_t* byteCount, void* overlapped) {
  const std::int32_t result = device_.RawReadData(buffer, byteCount, overlapped);
  const Bytes bytes(static_cast<std::uint8_t*>(buffer), *byteCount);
  const capture::Part part = conversation_.Read(bytes, result < 0);
  const bool isWholeReply = result >= 0 && part == capture::Part::kReply && conversation_.IsWhole();
  if (isOn_ && isWholeReply) ChangeReply(bytes);
  return result;
}

std::int32_t BedTeller::RawWriteData(void* buffer, std::uint32_t byteCount, void* overlapped) {
  conversation_.Write({static_cast<const std::uint8_t*>(buffer), byteCount});
  return device_.RawWriteData(buffer, byteCount, overlapped);
}

// The bytes are those of a reply without header, or the data behind it.
void BedTeller::ChangeReply(Bytes bytes) {
  switch (conversation_.Command()->reply) {
    case pmddb832::ReplyKind::kIdentityBlock:
      return ChangeIdentityBlock(bytes);
    case pmddb832::ReplyKind::kLevel:
      return ChangeLevelData(bytes);
    case pmddb832::ReplyKind::kStatusReply:
      return ChangeStatusData(bytes);
    default:
      return;
  }
}

void BedTeller::ChangeIdentityBlock(Bytes bytes) {
  pmddb832::IdentityBlock block{};
  if (bytes.size() != block.size()) return;
  std::copy(bytes.begin(), bytes.end(), block.begin());
  const auto letter = static_cast<char>(Get(block, identity::kLevelLetter));
  const auto digit = static_cast<char>(Get(block, identity::kLevelDigit));
  if (pmddb832::ExtendedLevelCode(letter, digit) == 0) return;
  hasRaisedLevel_ = digit == kLevelWithoutBed;
  if (hasRaisedLevel_) Put(block, identity::kLevelDigit, kLevelWithBed);
  FillIn(block, identity::kFlatbedWidth, identity::kFlatbedHeight);
  FillIn(block, identity::kFeederWidth, identity::kFeederHeight);
  FillIn(block, identity::kTransparencyWidth, identity::kTransparencyHeight);
  std::copy(block.begin(), block.end(), bytes.begin());
}

void BedTeller::ChangeLevelData(Bytes data) {
  const std::optional<pmddb832::StandardIdentity> told = pmddb832::DecodeIdentity(data);
  if (!told) return;
  lastResolution_ = told->LastResolution();
  const std::size_t area = pmddb832::kFirstResolutionOffset +
                           told->resolutionCount * pmddb832::kIdentityResolutionBytes + 1;
  FillIn(data, area, lastResolution_);
}

void BedTeller::ChangeStatusData(Bytes data) const {
  constexpr std::size_t kHeader = sizeof(pmddb832::ReplyHeader);
  FillIn(data, decltype(status_reply::kFeederWidth)::kOffset - kHeader, lastResolution_);
  FillIn(data, decltype(status_reply::kTransparencyWidth)::kOffset - kHeader, lastResolution_);
}

}  // namespace pmscan
