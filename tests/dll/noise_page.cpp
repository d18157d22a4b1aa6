// The truth for scans of a page of noise:
//
//   noise_page write FILE      makes FILE, a bitmap of 637 x 411 grey pixels at 100 dots per inch
//   noise_page compare FILE    FILE is the first 400 x 300 of them, as a portable grey map

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

constexpr std::uint32_t kWidth = 637;
constexpr std::uint32_t kHeight = 411;
constexpr std::uint32_t kPixelsPerMetre = 3937;
constexpr std::uint32_t kScannedWidth = 400;
constexpr std::uint32_t kScannedHeight = 300;

char Noise(std::uint32_t x, std::uint32_t y) {
  std::uint32_t value = (y * kWidth + x + 1) * 2654435761U;
  value ^= value >> 15;
  value *= 2246822519U;
  return static_cast<char>(value >> 24);
}

void Put(std::string& bytes, std::uint32_t value, int count = 4) {
  for (int i = 0; i < count; ++i) bytes += static_cast<char>(value >> (8 * i));
}

// From the bottom up, each line filled up to 4 bytes.
std::string Bitmap() {
  constexpr std::uint32_t kHead = 14 + 40;
  constexpr std::uint32_t kLineBytes = (kWidth * 3 + 3) / 4 * 4;
  std::string bytes = "BM";
  for (const std::uint32_t value :
       {kHead + kLineBytes * kHeight, 0U, kHead, 40U, kWidth, kHeight}) {
    Put(bytes, value);
  }
  Put(bytes, 1, 2);
  Put(bytes, 24, 2);
  for (const std::uint32_t value : {0U, 0U, kPixelsPerMetre, kPixelsPerMetre, 0U, 0U}) {
    Put(bytes, value);
  }
  for (std::uint32_t y = kHeight; y-- > 0;) {
    for (std::uint32_t x = 0; x < kWidth; ++x) bytes.append(3, Noise(x, y));
    bytes.append(kLineBytes - kWidth * 3, '\0');
  }
  return bytes;
}

std::string GreyMap() {
  std::string bytes = "P5 400 300 255\n";
  for (std::uint32_t y = 0; y < kScannedHeight; ++y) {
    for (std::uint32_t x = 0; x < kScannedWidth; ++x) bytes += Noise(x, y);
  }
  return bytes;
}

int Compare(const char* file) {
  std::ifstream stream(file, std::ios::binary);
  const std::string found(std::istreambuf_iterator<char>(stream), {});
  const std::string expected = GreyMap();
  if (found == expected) return 0;
  std::size_t place = 0;
  while (place < found.size() && place < expected.size() && found[place] == expected[place]) {
    ++place;
  }
  std::fprintf(stderr, "%s: expected %zu bytes, there are %zu; byte %zu is the first other one\n",
               file, expected.size(), found.size(), place);
  return 1;
}

}  // namespace

int main(int count, char** words) {
  if (count != 3) return 2;
  if (std::string(words[1]) == "compare") return Compare(words[2]);
  std::ofstream(words[2], std::ios::binary) << Bitmap();
  return 0;
}
