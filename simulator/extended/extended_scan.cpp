#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "simulator/catalog/hex.h"
#include "simulator/device/color_modes.h"
#include "simulator/device/little_endian.h"
#include "simulator/device/protocol_bytes.h"
#include "simulator/extended/extended_blocks.h"
#include "simulator/extended/extended_scanner.h"
#include "simulator/extended/extended_transfer.h"

// A scan on the extended scanner: the parameter block, the start of the transfer and its end.

namespace simulator {
namespace {

namespace field = parameter_block;

constexpr std::array<std::uint8_t, 6> kDepths{1, 4, 8, 12, 14, 16};

std::optional<ColorMode> FindColorMode(std::uint8_t code) {
  constexpr std::uint8_t kBlueFirst = 0x23;
  return code == kBlueFirst ? ColorMode::kBlueGreenRed : FindSharedColorMode(code);
}

std::string WhyFormatImpossible(std::span<const std::uint8_t> block) {
  const std::uint8_t bits = block[field::kBits];
  const std::optional<ColorMode> mode = FindColorMode(block[field::kColorMode]);
  if (!mode) return "unknown colour mode " + Hex(block.subspan(field::kColorMode, 1));
  if (std::count(kDepths.begin(), kDepths.end(), bits) == 0) {
    return "no samples of " + std::to_string(bits) + " bits";
  }
  if (bits == 1 && IsColor(*mode)) return "no colour in samples of 1 bit";
  if (bits == 1 && Get32(block, field::kWidth) % 8 != 0) {
    return "a width of " + std::to_string(Get32(block, field::kWidth)) +
           " pixels of 1 bit leaves the last byte broken";
  }
  if (block[field::kLinesPerBlock] == 0) return "0 lines per block";
  return {};
}

std::int8_t Signed(std::span<const std::uint8_t> block, std::size_t place) {
  return static_cast<std::int8_t>(block[place]);
}

ScanRequest Decode(std::span<const std::uint8_t> block) {
  ScanRequest request;
  request.dotsPerInch = Get32(block, field::kMainResolution);
  request.left = Get32(block, field::kLeft);
  request.top = Get32(block, field::kTop);
  request.width = Get32(block, field::kWidth);
  request.height = Get32(block, field::kHeight);
  request.colorMode = *FindColorMode(block[field::kColorMode]);
  request.bits = block[field::kBits];
  request.mirrored = block[field::kMirror] != 0;
  request.sharpness = Signed(block, field::kSharpness);
  request.brightness = Signed(block, field::kBrightness);
  request.screen = block[field::kHalftone];
  if (block[field::kThreshold] != 0) request.threshold = block[field::kThreshold];
  return request;
}

}  // namespace

PixelSize ExtendedScanner::Area(std::uint8_t option) const {
  if (option == 0) return identity_.flatbed;
  return source.HasFeeder() ? identity_.feeder : identity_.transparencyUnit;
}

std::string ExtendedScanner::WhyAreaImpossible(Bytes block) const {
  const ScanRequest scan = Decode(block);
  const auto limit = [&](std::uint32_t pixels) {
    return std::uint64_t{pixels} * scan.dotsPerInch / identity_.basicResolution;
  };
  const PixelSize area = Area(block[field::kOption]);
  return WhyOutside(scan, limit(area.width), limit(area.height));
}

std::string ExtendedScanner::WhyTonesImpossible(Bytes block) const {
  if (!IsKnownScreen(block[field::kHalftone], identity_.level.at(1))) {
    return "no halftone " + Hex(block.subspan(field::kHalftone, 1));
  }
  if (!HasGammaTables() && !GammaTables::BuiltIn(block[field::kGamma])) {
    return "no gamma " + Hex(block.subspan(field::kGamma, 1));
  }
  if (block[field::kColorCorrection] != 0 && !ColorMatrix()) return "no colour matrix was sent";
  const std::int8_t brightness = Signed(block, field::kBrightness);
  const std::int8_t sharpness = Signed(block, field::kSharpness);
  if (brightness < -3 || brightness > 3) return "no brightness " + std::to_string(brightness);
  if (sharpness < -2 || sharpness > 2) return "no sharpness " + std::to_string(sharpness);
  return {};
}

std::string ExtendedScanner::WhyImpossible(Bytes block) const {
  const std::uint32_t resolution = Get32(block, field::kMainResolution);
  if (resolution < identity_.minResolution || resolution > identity_.maxResolution) {
    return std::to_string(resolution) + " dots per inch are out of range";
  }
  if (Get32(block, field::kSubResolution) != resolution) return "the two resolutions differ";
  std::string format = WhyFormatImpossible(block);
  if (!format.empty()) return format;
  std::string tones = WhyTonesImpossible(block);
  if (!tones.empty()) return tones;
  const std::string option = source.WhyImpossible(block[field::kOption]);
  return option.empty() ? WhyAreaImpossible(block) : option;
}

void ExtendedScanner::JudgeReserved(Bytes block) {
  for (std::size_t i = field::kReserved; i < field::kBytes; ++i) {
    if (block[i] == 0) continue;
    Violate("expected 00 in the reserved byte " + std::to_string(i) + " of the parameter block, " +
            "got " + Hex(block.subspan(i, 1)));
  }
}

// Gamma tables are those that came since the last parameter block: they belong to this one.
void ExtendedScanner::TakeParameters(Bytes block) {
  JudgeReserved(block);
  request_.reset();
  const std::string reason = WhyImpossible(block);
  const GammaTables gamma = TakeGamma(block[field::kGamma]);
  if (!reason.empty()) {
    Refuse(reason);
    return;
  }
  request_ = Decode(block);
  request_->gamma = gamma;
  if (block[field::kColorCorrection] != 0) request_->colorMatrix = ColorMatrix();
  source.Select(block[field::kOption]);
  linesPerBlock_ = block[field::kLinesPerBlock];
  Answer(kAck);
}

void ExtendedScanner::StartTransfer(Bytes) {
  if (!request_) Violate("expected FS W with an accepted parameter block before FS G");
  const std::string reason = request_ ? WhyTransferRefused() : "no parameter block was accepted";
  if (reason.empty()) {
    BeginTransfer();
    return;
  }
  NoteRefusal("transfer refused: " + reason);
  std::array<std::uint8_t, transfer_header::kBytes> header{kStx};
  if (defects.headerWithoutStx) header[0] = kNak;
  header[transfer_header::kStatus] = kTransferError;
  Answer(header);
}

void ExtendedScanner::BeginTransfer() {
  if (defects.headerWithoutStx) {
    Answer(std::array<std::uint8_t, transfer_header::kBytes>{kNak});
    return;
  }
  const BlockTransfer::Manner manner{.linesPerBlock = linesPerBlock_,
                                     .emptyLast = manners_.emptyLastBlock,
                                     .fromFeeder = source.IsFeeder()};
  auto started =
      std::make_unique<ExtendedTransfer>(LineSource(Document(), *request_), manner, defects);
  Answer(started->Header());
  Begin(std::move(started));
}

}  // namespace simulator
