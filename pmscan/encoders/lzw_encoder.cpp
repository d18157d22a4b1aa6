#include "pmscan/encoders/lzw_encoder.h"

#include <algorithm>

namespace pmscan {
namespace {

constexpr unsigned kShortestCode = 9;
constexpr std::uint16_t kClear = 256;
constexpr std::uint16_t kEnd = 257;
constexpr std::uint16_t kFirstFree = 258;
constexpr std::uint16_t kTableFull = 4094;
constexpr std::size_t kPlaces = 16384;  // a power of two, some times the number of codes
constexpr std::uint32_t kScatter = 2654435761u;
constexpr unsigned kScatterShift = 18;  // leaves a number below kPlaces

}  // namespace

LzwEncoder::LzwEncoder() : keys_(kPlaces), codes_(kPlaces) {
  codeBits_ = kShortestCode;
  Restart();
}

void LzwEncoder::Restart() {
  bits_.Put(kClear, codeBits_);
  codeBits_ = kShortestCode;
  nextCode_ = kFirstFree;
  std::fill(keys_.begin(), keys_.end(), 0);
}

// The code of `before` with the byte behind it; 0 and to be filled in when it has none.
std::uint16_t& LzwEncoder::PlaceOf(std::uint16_t before, std::uint8_t byte) {
  const std::uint32_t key = (std::uint32_t{before} << 8 | byte) + 1;
  std::size_t place = key * kScatter >> kScatterShift;
  while (keys_[place] != 0 && keys_[place] != key) place = (place + 1) % kPlaces;
  if (keys_[place] == 0) codes_[place] = 0;
  keys_[place] = key;
  return codes_[place];
}

void LzwEncoder::Write(std::span<const std::uint8_t> bytes) {
  for (const std::uint8_t byte : bytes) {
    if (!held_) {
      held_ = byte;
      continue;
    }
    std::uint16_t& code = PlaceOf(*held_, byte);
    if (code != 0) {
      held_ = code;
      continue;
    }
    code = nextCode_;
    bits_.Put(*held_, codeBits_);
    held_ = byte;
    Grow();
  }
}

// Whoever reads is one code behind, so the codes become longer one early.
void LzwEncoder::Grow() {
  ++nextCode_;
  if (nextCode_ == kTableFull) return Restart();
  if (nextCode_ == 1u << codeBits_) ++codeBits_;
}

std::vector<std::uint8_t> LzwEncoder::End() {
  if (held_) {
    bits_.Put(*held_, codeBits_);
    Grow();
  }
  held_.reset();
  bits_.Put(kEnd, codeBits_);
  bits_.Fill(false);
  std::vector<std::uint8_t> bytes = bits_.Take();
  codeBits_ = kShortestCode;
  Restart();
  return bytes;
}

}  // namespace pmscan
