#include "pmscan/encoders/fax_encoder.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "pmscan/encoders/fax_codes.h"

namespace pmscan {
namespace {

constexpr std::int64_t kLongStep = 64;
constexpr std::int64_t kLongestRun = 2560;
constexpr std::size_t kAfterLast = 4;  // changes at the width, more than are ever looked ahead

void Put(BitWriter& bits, const FaxCode& code) {
  bits.Put(code.bits, code.length);
}

}  // namespace

FaxEncoder::FaxEncoder(std::uint32_t pageWidth)
    : width_(pageWidth), above_(kAfterLast, std::int64_t{pageWidth}) {}

FaxEncoder::Changes FaxEncoder::ChangesIn(std::span<const std::uint8_t> line) const {
  constexpr std::uint8_t kAllWhite = 0xFF;
  Changes changes;
  bool isBlack = false;
  for (std::int64_t x = 0; x < width_; ++x) {
    const std::uint8_t byte = line[static_cast<std::size_t>(x / 8)];
    if (x % 8 == 0 && byte == (isBlack ? 0 : kAllWhite)) {
      x += 7;
      continue;
    }
    const bool isBlackHere = (byte >> (7 - x % 8) & 1) == 0;
    if (isBlackHere != isBlack) changes.push_back(x);
    isBlack = isBlackHere;
  }
  changes.insert(changes.end(), kAfterLast, width_);
  return changes;
}

// The change above that counts: the first to the right of `place` that is of the same kind as the
// next one in this line, and so has the parity of its index.
void FaxEncoder::WriteLine(std::span<const std::uint8_t> line) {
  Changes changes = ChangesIn(line);
  std::int64_t place = -1;  // the imaginary white pixel before the line
  std::size_t next = 0;     // change of this line
  std::size_t up = 0;       // and of the one above
  while (place < width_) {
    const bool isBlack = next % 2 == 1;
    up = up > 0 ? up - 1 : up;
    while (above_[up] < width_ && (above_[up] <= place || up % 2 != next % 2)) ++up;
    const std::int64_t distance = changes[next] - above_[up];
    if (above_[up] < width_ && above_[up + 1] < changes[next]) {
      Put(bits_, kFaxPass);
      place = above_[up + 1];
    } else if (std::abs(distance) <= 3) {
      Put(bits_, kFaxVertical[static_cast<std::size_t>(distance + 3)]);
      place = changes[next++];
    } else {
      PutHorizontal(std::max(place, std::int64_t{0}), &changes[next], isBlack);
      place = changes[next + 1];
      next += 2;
    }
  }
  above_ = std::move(changes);
}

void FaxEncoder::PutHorizontal(std::int64_t start, const std::int64_t* changes, bool isBlack) {
  Put(bits_, kFaxHorizontal);
  PutRun(changes[0] - start, isBlack);
  PutRun(changes[1] - changes[0], !isBlack);
}

void FaxEncoder::PutRun(std::int64_t pixels, bool isBlack) {
  for (; pixels >= kLongestRun + kLongStep; pixels -= kLongestRun) Put(bits_, kFaxLongest.back());
  if (pixels >= kLongStep) {
    const auto steps = static_cast<std::size_t>(pixels / kLongStep);
    const auto& codes = isBlack ? kFaxLongBlack : kFaxLongWhite;
    Put(bits_, steps <= codes.size() ? codes[steps - 1] : kFaxLongest[steps - codes.size() - 1]);
  }
  const auto rest = static_cast<std::size_t>(pixels % kLongStep);
  Put(bits_, isBlack ? kFaxShortBlack[rest] : kFaxShortWhite[rest]);
}

void FaxEncoder::End() {
  Put(bits_, kFaxEndOfLine);
  Put(bits_, kFaxEndOfLine);
  bits_.Fill(false);
}

}  // namespace pmscan
