#include "capture/file/crc32.h"

#include <array>

namespace capture {
namespace {

constexpr std::uint32_t kPolynomial = 0xEDB88320;  // with its lowest power in the highest bit

constexpr std::uint32_t RemainderOf(std::uint32_t byte) {
  std::uint32_t remainder = byte;
  for (int bit = 0; bit < 8; ++bit) {
    remainder = (remainder >> 1) ^ ((remainder & 1) != 0 ? kPolynomial : 0);
  }
  return remainder;
}

constexpr std::array<std::uint32_t, 256> MakeRemainders() {
  std::array<std::uint32_t, 256> remainders{};
  for (std::uint32_t byte = 0; byte < remainders.size(); ++byte) {
    remainders[byte] = RemainderOf(byte);
  }
  return remainders;
}

constexpr std::array<std::uint32_t, 256> kRemainders = MakeRemainders();

}  // namespace

std::uint32_t Crc32(std::span<const std::uint8_t> bytes, std::uint32_t before) {
  std::uint32_t sum = ~before;
  for (const std::uint8_t byte : bytes) sum = kRemainders[(sum ^ byte) & 0xFF] ^ (sum >> 8);
  return ~sum;
}

}  // namespace capture
