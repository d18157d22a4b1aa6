#include "imaging/row_kernels.h"

#include <doctest/doctest.h>

#include <algorithm>

#include "tests/imaging/row_sets.h"

// What each row is, in every kind of vectors: literal pixels, as often as it takes to fill the
// vectors, and an odd number of them.

namespace pmddb832::tests {
namespace {

using Bytes = std::vector<std::uint8_t>;

// More than two blocks of any kind.
constexpr std::size_t kTimes = 301;

Bytes Repeated(const Bytes& group, std::size_t times) {
  Bytes bytes;
  for (std::size_t i = 0; i < times; ++i) bytes.insert(bytes.end(), group.begin(), group.end());
  return bytes;
}

Bytes EveryByte() {
  Bytes bytes(256);
  for (std::size_t k = 0; k < bytes.size(); ++k) bytes[k] = static_cast<std::uint8_t>(k);
  return bytes;
}

// Calls `check` with each set of kernels that runs here, and tells which ones do not.
template <class Check>
void WithEachSet(Check check) {
  for (const RowSet& set : kRowSets) {
    if (!RunsHere(set)) {
      MESSAGE("skipped: this processor or system has no " << set.name);
      continue;
    }
    INFO(set.name);
    check(RowKernelsFor(set.vectors));
  }
}

Bytes Convert(RowKernel kernel, const Bytes& from, std::size_t pixels, std::size_t bytesWritten) {
  Bytes to(bytesWritten);
  kernel(from.data(), to.data(), pixels);
  return to;
}

// A group of so many pixels becomes that, alone and repeated.
struct Groups {
  std::size_t pixels;
  Bytes from;
  Bytes to;
};

void CheckGroups(RowKernel RowKernels::*row, const Groups& groups) {
  WithEachSet([&](const RowKernels& kernels) {
    for (const std::size_t times : {std::size_t{1}, kTimes}) {
      CAPTURE(times);
      CHECK(Convert(kernels.*row, Repeated(groups.from, times), times * groups.pixels,
                    times * groups.to.size()) == Repeated(groups.to, times));
    }
  });
}

}  // namespace

TEST_CASE("inversion complements every byte") {
  Bytes expected = EveryByte();
  std::reverse(expected.begin(), expected.end());
  CheckGroups(&RowKernels::invert, {256, EveryByte(), expected});
  CheckGroups(&RowKernels::invert, {3, {0x00, 0x81, 0xFE}, {0xFF, 0x7E, 0x01}});
}

TEST_CASE("the preview map takes an eleventh from every grey, and leaves white at 234") {
  Bytes expected;
  for (int k = 0; k < 255; ++k) expected.push_back(static_cast<std::uint8_t>(k - k / 11));
  expected.push_back(234);
  CHECK(expected[254] == 231);
  CheckGroups(&RowKernels::previewGrey, {256, EveryByte(), expected});
  CheckGroups(&RowKernels::previewGrey, {5, {0, 10, 11, 254, 255}, {0, 10, 10, 231, 234}});
}

TEST_CASE("the swaps reverse the channels of each pixel, and keep the bytes of a sample") {
  CheckGroups(&RowKernels::swapBytes,
              {3, {1, 2, 3, 4, 5, 6, 7, 8, 9}, {3, 2, 1, 6, 5, 4, 9, 8, 7}});
  CheckGroups(
      &RowKernels::swapSamples,
      {2, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}, {5, 6, 3, 4, 1, 2, 11, 12, 9, 10, 7, 8}});
}

TEST_CASE("the reductions keep the high byte of each sample") {
  const Bytes pixels{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
  CheckGroups(&RowKernels::reduce, {2, pixels, {2, 4, 6, 8, 10, 12}});
  CheckGroups(&RowKernels::reduceSwapped, {2, pixels, {6, 4, 2, 12, 10, 8}});
}

TEST_CASE("12-bit colour is unpacked into one nibble and one byte a pixel") {
  const Bytes packed{0x12, 0x34, 0x56, 0xAB, 0xCD, 0xEF};
  CheckGroups(&RowKernels::unpack12, {4, packed, {0x05, 0x31, 0x06, 0x42, 0x0E, 0xCA, 0x0F, 0xDB}});
  WithEachSet([&](const RowKernels& kernels) {
    CHECK(Convert(kernels.unpack12, packed, 3, 6) == Bytes{0x05, 0x31, 0x06, 0x42, 0x0E, 0xCA});
    const Bytes odd =
        Convert(kernels.unpack12, Repeated(packed, kTimes), 4 * kTimes - 1, 8 * kTimes);
    CHECK(Bytes(odd.end() - 6, odd.end()) == Bytes{0x06, 0x42, 0x0E, 0xCA, 0x00, 0x00});
  });
}

TEST_CASE("the palette counts levels of six by 36, 6 and 1") {
  constexpr std::size_t kLevels[]{0, 1, 1, 2, 3, 4, 4, 5};
  WithEachSet([&](const RowKernels& kernels) {
    for (std::size_t index = 0; index < 512; ++index) {
      const auto plane = [](std::size_t bits) {
        return Bytes(kTimes, static_cast<std::uint8_t>(bits % 8 << 5));
      };
      const Bytes first = plane(index / 64);
      const Bytes middle = plane(index / 8);
      const Bytes last = plane(index);
      Bytes written(2 * kTimes);
      kernels.paletteIndices({first.data(), middle.data(), last.data()}, written.data(),
                             2 * kTimes);
      const auto expected = static_cast<std::uint8_t>(
          36 * kLevels[index / 64] + 6 * kLevels[index / 8 % 8] + kLevels[index % 8]);
      CHECK(written == Repeated({expected, 0}, kTimes));
    }
  });
}

TEST_CASE("the palette uses the top three bits of each sample, the high nibble's first") {
  WithEachSet([](const RowKernels& kernels) {
    const Bytes first(kTimes, 0x8E);
    const Bytes middle(kTimes, 0x10);
    const Bytes last(kTimes, 0x0F);
    Bytes written(2 * kTimes);
    kernels.paletteIndices({first.data(), middle.data(), last.data()}, written.data(),
                           2 * kTimes - 1);
    Bytes expected = Repeated({108, 185}, kTimes);
    expected.back() = 0;
    CHECK(written == expected);
  });
}

TEST_CASE("no kernel touches its pointers for no pixels") {
  WithEachSet([](const RowKernels& kernels) {
    for (const RowKernel kernel :
         {kernels.invert, kernels.previewGrey, kernels.swapBytes, kernels.swapSamples,
          kernels.reduce, kernels.reduceSwapped, kernels.unpack12}) {
      kernel(nullptr, nullptr, 0);
    }
    kernels.paletteIndices({nullptr, nullptr, nullptr}, nullptr, 0);
  });
}

}  // namespace pmddb832::tests
