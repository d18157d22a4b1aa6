#include <doctest/doctest.h>

#include <algorithm>
#include <cstring>

#include "tests/imaging/row_sets.h"
#include "tests/safety/guarded_memory.h"

// Every row in every kind of vectors beside the plain loop: any width, at any address, and not a
// byte beyond either end.

namespace pmddb832::tests {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t kUntouched = 0xA5;
constexpr std::size_t kAddresses = 64;  // beside each other, up to the longest vector
constexpr std::size_t kLongestRow = 32749;

// What a row takes: `bytes` for every group of `pixels`, the last group counted whole.
struct GroupSize {
  std::size_t pixels;
  std::size_t bytes;
  std::size_t BytesOf(std::size_t count) const { return (count + pixels - 1) / pixels * bytes; }
};

struct RowUnderTest {
  std::string name;
  RowKernel RowKernels::*kernel;
  GroupSize read;
  GroupSize written;
};

const std::vector<RowUnderTest> kRows{
    {"inversion", &RowKernels::invert, {1, 1}, {1, 1}},
    {"preview map", &RowKernels::previewGrey, {1, 1}, {1, 1}},
    {"24-bit swap", &RowKernels::swapBytes, {1, 3}, {1, 3}},
    {"48-bit swap", &RowKernels::swapSamples, {1, 6}, {1, 6}},
    {"reduction", &RowKernels::reduce, {1, 6}, {1, 3}},
    {"reversed reduction", &RowKernels::reduceSwapped, {1, 6}, {1, 3}},
    {"12-bit unpack", &RowKernels::unpack12, {2, 3}, {1, 2}},
};

// Memory that ends where nobody may touch, at both ends of a row in turn.
class Edges {
 public:
  explicit Edges(std::size_t bytes)
      : behindGuard_(bytes, Guard::kBefore), beforeGuard_(bytes, Guard::kBehind) {}

  // `bytes` bytes right behind the guard, or right before it.
  std::uint8_t* At(bool atEnd, std::size_t bytes) const {
    const std::span<std::uint8_t> memory = (atEnd ? beforeGuard_ : behindGuard_).Bytes();
    return memory.data() + (atEnd ? memory.size() - bytes : 0);
  }

 private:
  GuardedMemory behindGuard_;
  GuardedMemory beforeGuard_;
};

const Bytes& Noise() {
  static const Bytes noise = [] {
    Bytes bytes(6 * kLongestRow + kAddresses);
    std::uint32_t state = 1;
    for (std::uint8_t& byte : bytes) {
      state = state * 1664525u + 1013904223u;
      byte = static_cast<std::uint8_t>(state >> 24);
    }
    return bytes;
  }();
  return noise;
}

// Every width up to several blocks; one that holds exactly a turn of eight of the longest vectors,
// at one of the addresses; and widths of real lines that are no multiple of anything.
std::vector<std::size_t> Widths() {
  std::vector<std::size_t> widths;
  for (std::size_t pixels = 0; pixels <= 300; ++pixels) widths.push_back(pixels);
  widths.insert(widths.end(), {383, 509, 601, 773, 2549, 5101, kLongestRow});
  return widths;
}

Bytes Expected(const RowUnderTest& row, std::size_t pixels) {
  Bytes expected(row.written.BytesOf(pixels));
  (kScalarRowKernels.*row.kernel)(Noise().data(), expected.data(), pixels);
  return expected;
}

// Runs `check` with the kernels where they run, else says that they do not.
template <class Check>
void WithSet(const RowSet& set, Check check) {
  if (RunsHere(set)) return check(RowKernelsFor(set.vectors));
  MESSAGE("skipped: this processor or system has no " << set.name);
}

// Where a kernel writes other bytes than the plain loop does, beside guards.
std::string DifferencesAtEdges(const RowUnderTest& row, RowKernel kernel, std::size_t pixels) {
  static const Edges sources(6 * kLongestRow);
  static const Edges destinations(6 * kLongestRow);
  const Bytes expected = Expected(row, pixels);
  const std::size_t bytesRead = row.read.BytesOf(pixels);
  std::string differences;
  for (int places = 0; places < 4; ++places) {
    std::uint8_t* const from = sources.At((places & 1) != 0, bytesRead);
    std::uint8_t* const to = destinations.At((places & 2) != 0, expected.size());
    std::copy_n(Noise().begin(), bytesRead, from);
    std::fill_n(to, expected.size(), kUntouched);
    kernel(from, to, pixels);
    if (!std::equal(expected.begin(), expected.end(), to)) {
      differences += " at places " + std::to_string(places);
    }
  }
  return differences;
}

// A destination at an address of which the last six bits are `address`, with bytes around the row
// that must stay.
class Surrounded {
 public:
  Surrounded(std::size_t address, std::size_t bytes)
      : block_(bytes + 4 * kAddresses, kUntouched), bytes_(bytes) {
    const std::size_t start = reinterpret_cast<std::uintptr_t>(block_.data()) % kAddresses;
    offset_ = 2 * kAddresses - start + address;
  }

  std::uint8_t* data() { return block_.data() + offset_; }

  bool Holds(const Bytes& row) const {
    const auto isUntouched = [](std::uint8_t byte) { return byte == kUntouched; };
    const auto start = block_.begin() + static_cast<std::ptrdiff_t>(offset_);
    const auto end = start + static_cast<std::ptrdiff_t>(bytes_);
    return std::equal(start, end, row.begin(), row.end()) &&
           std::all_of(block_.begin(), start, isUntouched) &&
           std::all_of(end, block_.end(), isUntouched);
  }

 private:
  Bytes block_;
  std::size_t bytes_;
  std::size_t offset_;
};

// The addresses at which a kernel writes other bytes than the plain loop does, or beyond its row.
std::string DifferencesAtAddresses(const RowUnderTest& row, RowKernel kernel, std::size_t pixels) {
  const Bytes expected = Expected(row, pixels);
  std::string differences;
  for (std::size_t address = 0; address < kAddresses; ++address) {
    Surrounded source(7 * address % kAddresses, row.read.BytesOf(pixels));
    std::copy_n(Noise().begin(), row.read.BytesOf(pixels), source.data());
    Surrounded destination(address, expected.size());
    kernel(source.data(), destination.data(), pixels);
    if (!destination.Holds(expected)) differences += " at " + std::to_string(address);
  }
  return differences;
}

void CheckRows(const RowSet& set) {
  WithSet(set, [](const RowKernels& kernels) {
    for (const RowUnderTest& row : kRows) {
      for (const std::size_t pixels : Widths()) {
        INFO(row.name << ", pixels: " << pixels);
        CHECK(DifferencesAtEdges(row, kernels.*row.kernel, pixels) == "");
        CHECK(DifferencesAtAddresses(row, kernels.*row.kernel, pixels) == "");
      }
    }
  });
}

// Three planes that lie apart, each at an end of its memory, and the row at an end of its own.
std::string PaletteDifferences(const RowKernels& kernels, std::size_t pixels) {
  static const Edges planes[3]{Edges(kLongestRow), Edges(kLongestRow), Edges(kLongestRow)};
  static const Edges destinations(kLongestRow);
  const std::size_t bytes = (pixels + 1) / 2;
  std::string differences;
  for (std::size_t places = 0; places < 16; ++places) {
    std::uint8_t* at[3];
    for (std::size_t plane = 0; plane < 3; ++plane) {
      at[plane] = planes[plane].At((places >> plane & 1) != 0, bytes);
      std::copy_n(Noise().data() + plane * 1013, bytes, at[plane]);
    }
    Bytes expected(pixels);
    kScalarRowKernels.paletteIndices({at[0], at[1], at[2]}, expected.data(), pixels);
    std::uint8_t* const to = destinations.At((places & 8) != 0, pixels);
    std::fill_n(to, pixels, kUntouched);
    kernels.paletteIndices({at[0], at[1], at[2]}, to, pixels);
    if (!std::equal(expected.begin(), expected.end(), to)) {
      differences += " at places " + std::to_string(places);
    }
  }
  return differences;
}

void CheckPalette(const RowSet& set) {
  WithSet(set, [](const RowKernels& kernels) {
    for (const std::size_t pixels : Widths()) {
      INFO("pixels: " << pixels);
      CHECK(PaletteDifferences(kernels, pixels) == "");
    }
  });
}

// Every combination of samples in both nibbles.
void CheckSamples(const RowSet& set) {
  WithSet(set, [](const RowKernels& kernels) {
    for (std::size_t combination = 0; combination < 4096; ++combination) {
      const auto plane = [](std::size_t sample) {
        return Bytes(128, static_cast<std::uint8_t>(sample % 16 * 17));
      };
      const Bytes first = plane(combination / 256);
      const Bytes middle = plane(combination / 16);
      const Bytes last = plane(combination);
      const ColourPlanes planes{first.data(), middle.data(), last.data()};
      Bytes expected(256);
      Bytes written(256);
      kScalarRowKernels.paletteIndices(planes, expected.data(), 256);
      kernels.paletteIndices(planes, written.data(), 256);
      CHECK(written == expected);
    }
  });
}

}  // namespace

TEST_CASE("rows in SSSE3 are those of the plain loops, at any width and address") {
  CheckRows(kRowSets[1]);
}

TEST_CASE("rows in AVX2 are those of the plain loops, at any width and address") {
  CheckRows(kRowSets[2]);
}

TEST_CASE("rows in AVX-512 are those of the plain loops, at any width and address") {
  CheckRows(kRowSets[3]);
}

TEST_CASE("palettes in any vectors are those of the plain loop, at any width and address") {
  for (const RowSet& set : kRowSets) CheckPalette(set);
}

TEST_CASE("palettes in any vectors know each combination of samples") {
  for (const RowSet& set : kRowSets) CheckSamples(set);
}

}  // namespace pmddb832::tests
