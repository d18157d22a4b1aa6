#include "pmscan/encoders/jpeg_blocks.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdlib>

#include "pmscan/encoders/jpeg_tables.h"

namespace pmscan {
namespace {

constexpr std::uint8_t kEndOfBlock = 0x00;
constexpr std::uint8_t kSixteenZeros = 0xF0;

// The cosine transform of eight samples, `step` apart, but for the factors kTransformScale; after
// Arai, Agui and Nakajima.
void Transform(float* d, std::size_t step) {
  constexpr float kHalfRoot = 0.707106781f;
  float* const s[8] = {
      d,           d + step, d + 2 * step, d + 3 * step, d + 4 * step, d + 5 * step, d + 6 * step,
      d + 7 * step};
  const float sum07 = *s[0] + *s[7], less07 = *s[0] - *s[7];
  const float sum16 = *s[1] + *s[6], less16 = *s[1] - *s[6];
  const float sum25 = *s[2] + *s[5], less25 = *s[2] - *s[5];
  const float sum34 = *s[3] + *s[4], less34 = *s[3] - *s[4];

  const float outer = sum07 + sum34, outerLess = sum07 - sum34;
  const float inner = sum16 + sum25, innerLess = sum16 - sum25;
  const float evenTurn = (innerLess + outerLess) * kHalfRoot;
  *s[0] = outer + inner;
  *s[4] = outer - inner;
  *s[2] = outerLess + evenTurn;
  *s[6] = outerLess - evenTurn;

  const float low = less34 + less25, middle = less25 + less16, high = less16 + less07;
  const float turn = (low - high) * 0.382683433f;
  const float lowTurn = 0.541196100f * low + turn;
  const float highTurn = 1.306562965f * high + turn;
  const float middleTurn = middle * kHalfRoot;
  const float upper = less07 + middleTurn, lower = less07 - middleTurn;
  *s[5] = lower + lowTurn;
  *s[3] = lower - lowTurn;
  *s[1] = upper + highTurn;
  *s[7] = upper - highTurn;
}

constexpr std::array kTransformScale{1.0, 1.387039845, 1.306562965, 1.175875602,
                                     1.0, 0.785694958, 0.541196100, 0.275899379};

// The usual meaning of the quality: half and double the steps are 75 and 25.
std::uint8_t StepAt(std::uint32_t quality, std::uint8_t step) {
  const std::uint32_t percent = quality < 50 ? 5000 / quality : 200 - 2 * quality;
  return static_cast<std::uint8_t>(std::clamp((step * percent + 50) / 100, 1u, 255u));
}

}  // namespace

template <typename Lengths, typename Values>
JpegBlocks::Codes JpegBlocks::CodesOf(const Lengths& lengths, const Values& values) {
  Codes codes{};
  unsigned bits = 0;
  std::size_t next = 0;
  for (std::size_t length = 1; length <= lengths.size(); ++length, bits <<= 1) {
    for (unsigned i = 0; i < lengths[length - 1]; ++i) {
      codes[values[next++]] = {static_cast<std::uint16_t>(bits++),
                               static_cast<std::uint8_t>(length)};
    }
  }
  return codes;
}

JpegBlocks::JpegBlocks(std::uint32_t quality)
    : dcCodes_(CodesOf(kJpegDcLengths, kJpegDcValues)),
      acCodes_(CodesOf(kJpegAcLengths, kJpegAcValues)) {
  for (std::size_t i = 0; i < steps_.size(); ++i) {
    steps_[i] = StepAt(quality, kJpegSteps[i]);
    const double factors = kTransformScale[i / 8] * kTransformScale[i % 8] * kJpegBlock;
    scale_[i] = static_cast<float>(1 / (steps_[i] * factors));
  }
}

void JpegBlocks::Write(JpegBlock& samples, std::size_t component) {
  for (std::size_t i = 0; i < kJpegBlock; ++i) Transform(&samples[i * kJpegBlock], 1);
  for (std::size_t i = 0; i < kJpegBlock; ++i) Transform(&samples[i], kJpegBlock);
  std::array<int, 64> amounts{};
  for (std::size_t i = 0; i < amounts.size(); ++i) {
    const std::size_t place = kJpegZigzag[i];
    amounts[i] = static_cast<int>(std::lround(samples[place] * scale_[place]));
  }
  PutAmount(dcCodes_, 0, amounts[0] - lastDc_[component]);
  lastDc_[component] = amounts[0];
  unsigned zeros = 0;
  for (std::size_t i = 1; i < amounts.size(); ++i) {
    if (amounts[i] == 0) {
      ++zeros;
      continue;
    }
    for (; zeros > 15; zeros -= 16) Put(acCodes_[kSixteenZeros]);
    PutAmount(acCodes_, zeros, amounts[i]);
    zeros = 0;
  }
  if (zeros > 0) Put(acCodes_[kEndOfBlock]);
}

// The number of its bits behind `zeros` amounts of 0, and the bits: a negative one as one less.
void JpegBlocks::PutAmount(const Codes& codes, unsigned zeros, int amount) {
  const auto length =
      static_cast<unsigned>(std::bit_width(static_cast<unsigned>(std::abs(amount))));
  Put(codes[zeros << 4 | length]);
  bits_.Put(static_cast<std::uint32_t>(amount < 0 ? amount - 1 : amount), length);
}

}  // namespace pmscan
