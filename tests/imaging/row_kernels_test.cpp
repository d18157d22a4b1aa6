#include "imaging/row_kernels.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "imaging/cpu_features.h"

namespace pmddb832::tests {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kAlignments = 16;
constexpr std::uint8_t kUntouched = 0xA5;

// What a row takes: `bytes` for every group of `pixels`, the last group counted whole.
struct GroupSize {
  std::size_t pixels;
  std::size_t bytes;
  std::size_t BytesOf(std::size_t count) const { return (count + pixels - 1) / pixels * bytes; }
};

struct Twin {
  std::string name;
  RowKernel fast;
  RowKernel oracle;
  GroupSize read;
  GroupSize written;
};

const std::vector<Twin>& Twins() {
  static const std::vector<Twin> twins{
      {"Invert", ssse3_rows::Invert, scalar_rows::Invert, {1, 1}, {1, 1}},
      {"SwapBytes", ssse3_rows::SwapBytes, scalar_rows::SwapBytes, {1, 3}, {1, 3}},
      {"SwapSamples", ssse3_rows::SwapSamples, scalar_rows::SwapSamples, {1, 6}, {1, 6}},
      {"Reduce", ssse3_rows::Reduce, scalar_rows::Reduce, {1, 6}, {1, 3}},
      {"ReduceSwapped", ssse3_rows::ReduceSwapped, scalar_rows::ReduceSwapped, {1, 6}, {1, 3}},
      {"Unpack12", ssse3_rows::Unpack12, scalar_rows::Unpack12, {2, 3}, {1, 2}},
  };
  return twins;
}

Bytes Noise(std::size_t count) {
  Bytes bytes(count);
  std::uint32_t state = 1;
  for (std::uint8_t& byte : bytes) {
    state = state * 1664525u + 1013904223u;
    byte = static_cast<std::uint8_t>(state >> 24);
  }
  return bytes;
}

Bytes EveryByte() {
  Bytes bytes(256);
  for (std::size_t k = 0; k < bytes.size(); ++k) bytes[k] = static_cast<std::uint8_t>(k);
  return bytes;
}

// Bytes that start `offset` behind an aligned address and end with the block that holds them, so
// that the sanitizer sees the first access beyond.
class ExactRow {
 public:
  ExactRow(std::size_t offset, std::size_t bytes)
      : offset_(offset), bytes_(bytes), block_(new std::uint8_t[offset + bytes]) {
    std::fill_n(block_.get(), offset + bytes, kUntouched);
  }
  ExactRow(std::size_t offset, const Bytes& content) : ExactRow(offset, content.size()) {
    std::copy(content.begin(), content.end(), data());
  }

  std::uint8_t* data() { return block_.get() + offset_; }
  bool Holds(const Bytes& content) {
    return std::equal(data(), data() + bytes_, content.begin(), content.end()) &&
           std::all_of(block_.get(), data(), [](std::uint8_t b) { return b == kUntouched; });
  }

 private:
  std::size_t offset_;
  std::size_t bytes_;
  std::unique_ptr<std::uint8_t[]> block_;
};

std::vector<ExactRow> AtEveryAlignment(const Bytes& content) {
  std::vector<ExactRow> rows;
  for (std::size_t offset = 0; offset < kAlignments; ++offset) rows.emplace_back(offset, content);
  return rows;
}

// 0 to 300, and widths of real lines that are no multiple of anything.
std::vector<std::size_t> Lengths() {
  std::vector<std::size_t> lengths;
  for (std::size_t pixels = 0; pixels <= 300; ++pixels) lengths.push_back(pixels);
  lengths.insert(lengths.end(), {2549, 5101, 10199, 32749});
  return lengths;
}

// The alignments at which a twin wrote something else than its oracle, or beyond its row.
std::string Differences(const Twin& twin, std::size_t pixels) {
  std::vector<ExactRow> sources = AtEveryAlignment(Noise(twin.read.BytesOf(pixels)));
  Bytes expected(twin.written.BytesOf(pixels));
  twin.oracle(sources[0].data(), expected.data(), pixels);
  std::string differences;
  for (std::size_t to = 0; to < kAlignments; ++to) {
    for (std::size_t from = 0; from < kAlignments; ++from) {
      ExactRow destination(to, expected.size());
      twin.fast(sources[from].data(), destination.data(), pixels);
      if (destination.Holds(expected)) continue;
      differences += " from " + std::to_string(from) + " to " + std::to_string(to);
    }
  }
  return differences;
}

std::string PlaneDifferences(std::size_t pixels) {
  const Bytes noise = Noise(3 * ((pixels + 1) / 2));
  const auto third = static_cast<std::ptrdiff_t>(noise.size() / 3);
  std::vector<ExactRow> first = AtEveryAlignment({noise.begin(), noise.begin() + third});
  std::vector<ExactRow> middle = AtEveryAlignment({noise.begin() + third, noise.end() - third});
  std::vector<ExactRow> last = AtEveryAlignment({noise.end() - third, noise.end()});
  Bytes expected(pixels);
  scalar_rows::PaletteIndices({first[0].data(), middle[0].data(), last[0].data()}, expected.data(),
                              pixels);
  std::string differences;
  for (std::size_t to = 0; to < kAlignments; ++to) {
    for (std::size_t from = 0; from < kAlignments; ++from) {
      const ColourPlanes planes{first[from].data(), middle[(from + 5) % kAlignments].data(),
                                last[(from + 11) % kAlignments].data()};
      ExactRow destination(to, pixels);
      ssse3_rows::PaletteIndices(planes, destination.data(), pixels);
      if (destination.Holds(expected)) continue;
      differences += " from " + std::to_string(from) + " to " + std::to_string(to);
    }
  }
  return differences;
}

Bytes Convert(RowKernel kernel, const Bytes& from, std::size_t pixels, std::size_t bytesWritten) {
  ExactRow source(0, from);
  Bytes to(bytesWritten);
  kernel(source.data(), to.data(), pixels);
  return to;
}

}  // namespace

TEST_CASE("every SSSE3 kernel writes what its plain loop writes, at any length and alignment") {
  if (!CpuHasSsse3()) return;
  for (const Twin& twin : Twins()) {
    for (const std::size_t pixels : Lengths()) {
      INFO(twin.name << ", pixels: " << pixels);
      CHECK(Differences(twin, pixels) == "");
    }
  }
}

TEST_CASE("the SSSE3 palette writes what the plain loop writes, at any length and alignment") {
  if (!CpuHasSsse3()) return;
  for (const std::size_t pixels : Lengths()) {
    INFO("pixels: " << pixels);
    CHECK(PlaneDifferences(pixels) == "");
  }
}

TEST_CASE("the SSSE3 palette knows each combination of samples") {
  if (!CpuHasSsse3()) return;
  for (std::size_t combination = 0; combination < 4096; ++combination) {
    const auto plane = [](std::size_t sample) {
      return Bytes(16, static_cast<std::uint8_t>(sample % 16 * 17));
    };
    const Bytes first = plane(combination / 256);
    const Bytes middle = plane(combination / 16);
    const Bytes last = plane(combination);
    const ColourPlanes planes{first.data(), middle.data(), last.data()};
    Bytes expected(32);
    Bytes written(32);
    scalar_rows::PaletteIndices(planes, expected.data(), 32);
    ssse3_rows::PaletteIndices(planes, written.data(), 32);
    CHECK(written == expected);
  }
}

TEST_CASE("a processor with SSSE3 gets the SSSE3 kernels, and the plain preview map") {
  const RowKernels& kernels = RowKernelsFor(true);
  CHECK((kernels.invert == ssse3_rows::Invert));
  CHECK((kernels.previewGrey == scalar_rows::PreviewGrey));
  CHECK((kernels.swapBytes == ssse3_rows::SwapBytes));
  CHECK((kernels.swapSamples == ssse3_rows::SwapSamples));
  CHECK((kernels.reduce == ssse3_rows::Reduce));
  CHECK((kernels.reduceSwapped == ssse3_rows::ReduceSwapped));
  CHECK((kernels.unpack12 == ssse3_rows::Unpack12));
  CHECK((kernels.paletteIndices == ssse3_rows::PaletteIndices));
}

TEST_CASE("any other processor gets the plain loops") {
  const RowKernels& kernels = RowKernelsFor(false);
  CHECK((kernels.invert == scalar_rows::Invert));
  CHECK((kernels.previewGrey == scalar_rows::PreviewGrey));
  CHECK((kernels.swapBytes == scalar_rows::SwapBytes));
  CHECK((kernels.swapSamples == scalar_rows::SwapSamples));
  CHECK((kernels.reduce == scalar_rows::Reduce));
  CHECK((kernels.reduceSwapped == scalar_rows::ReduceSwapped));
  CHECK((kernels.unpack12 == scalar_rows::Unpack12));
  CHECK((kernels.paletteIndices == scalar_rows::PaletteIndices));
}

TEST_CASE("this processor gets its kernels, at every call the same") {
  CHECK(&FastestRowKernels() == &RowKernelsFor(CpuHasSsse3()));
  CHECK(&FastestRowKernels() == &RowKernelsFor(CpuHasSsse3()));
}

TEST_CASE("no kernel touches its pointers for no pixels") {
  const RowKernels& kernels = FastestRowKernels();
  for (const RowKernel kernel :
       {kernels.invert, kernels.previewGrey, kernels.swapBytes, kernels.swapSamples, kernels.reduce,
        kernels.reduceSwapped, kernels.unpack12}) {
    kernel(nullptr, nullptr, 0);
  }
  kernels.paletteIndices({nullptr, nullptr, nullptr}, nullptr, 0);
}

TEST_CASE("inversion complements every byte") {
  Bytes expected = EveryByte();
  std::reverse(expected.begin(), expected.end());
  CHECK(Convert(scalar_rows::Invert, EveryByte(), 256, 256) == expected);
}

TEST_CASE("the preview map takes an eleventh from every grey, and leaves white at 234") {
  Bytes expected;
  for (int k = 0; k < 255; ++k) expected.push_back(static_cast<std::uint8_t>(k - k / 11));
  expected.push_back(234);
  CHECK(expected[254] == 231);
  CHECK(Convert(scalar_rows::PreviewGrey, EveryByte(), 256, 256) == expected);
}

TEST_CASE("the swaps reverse the channels of each pixel, and keep the bytes of a sample") {
  CHECK(Convert(scalar_rows::SwapBytes, {1, 2, 3, 4, 5, 6}, 2, 6) == Bytes{3, 2, 1, 6, 5, 4});
  CHECK(Convert(scalar_rows::SwapSamples, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}, 2, 12) ==
        Bytes{5, 6, 3, 4, 1, 2, 11, 12, 9, 10, 7, 8});
}

TEST_CASE("the reductions keep the high byte of each sample") {
  const Bytes pixels{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
  CHECK(Convert(scalar_rows::Reduce, pixels, 2, 6) == Bytes{2, 4, 6, 8, 10, 12});
  CHECK(Convert(scalar_rows::ReduceSwapped, pixels, 2, 6) == Bytes{6, 4, 2, 12, 10, 8});
}

TEST_CASE("12-bit colour is unpacked into one nibble and one byte a pixel") {
  const Bytes packed{0x12, 0x34, 0x56, 0xAB, 0xCD, 0xEF};
  CHECK(Convert(scalar_rows::Unpack12, packed, 4, 8) ==
        Bytes{0x05, 0x31, 0x06, 0x42, 0x0E, 0xCA, 0x0F, 0xDB});
  CHECK(Convert(scalar_rows::Unpack12, packed, 3, 6) == Bytes{0x05, 0x31, 0x06, 0x42, 0x0E, 0xCA});
}

TEST_CASE("the palette counts levels of six by 36, 6 and 1") {
  constexpr std::size_t kLevels[]{0, 1, 1, 2, 3, 4, 4, 5};
  for (std::size_t index = 0; index < 512; ++index) {
    const auto sample = [](std::size_t bits) { return static_cast<std::uint8_t>(bits % 8 << 5); };
    const Bytes planes{sample(index / 64), sample(index / 8), sample(index)};
    Bytes written(2);
    scalar_rows::PaletteIndices({&planes[0], &planes[1], &planes[2]}, written.data(), 2);
    CHECK(written[0] == 36 * kLevels[index / 64] + 6 * kLevels[index / 8 % 8] + kLevels[index % 8]);
    CHECK(written[1] == 0);
  }
}

TEST_CASE("the palette uses the top three bits of each sample, the high nibble's first") {
  const Bytes planes{0x8E, 0x10, 0x0F};
  Bytes written(2);
  scalar_rows::PaletteIndices({&planes[0], &planes[1], &planes[2]}, written.data(), 2);
  CHECK(written == Bytes{108, 185});
}

}  // namespace pmddb832::tests
