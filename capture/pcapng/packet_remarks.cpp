#include "capture/pcapng/packet_remarks.h"

#include <charconv>

#include "capture/decode/decode_fields.h"
#include "capture/file/number_text.h"

namespace capture {
namespace {

constexpr std::string_view kRequest = "the host asked for ";
constexpr std::string_view kChecksum = "image data not kept: CRC-32 0x";
constexpr std::string_view kLastByte = ", last byte 0x";

// The number behind the words.
template <class Number>
std::optional<Number> NumberBehind(std::string_view comment, std::string_view words, int base) {
  const std::size_t place = comment.find(words);
  if (place == std::string_view::npos) return std::nullopt;
  comment.remove_prefix(place + words.size());
  Number number = 0;
  const auto read = std::from_chars(comment.data(), comment.data() + comment.size(), number, base);
  if (read.ec != std::errc()) return std::nullopt;
  return number;
}

}  // namespace

std::string RequestRemark(const Transfer& transfer) {
  const bool isWhole =
      transfer.direction == Direction::kToScanner || transfer.delivered == transfer.requested;
  return isWhole ? std::string() : std::string(kRequest) + Counted(transfer.requested, "byte");
}

std::string ImageRemark(const Transfer& transfer) {
  if (transfer.bytes.has_value()) return {};
  return std::string(kChecksum) + HexNumber(transfer.checksum).substr(2) + std::string(kLastByte) +
         HexNumber(transfer.lastByte).substr(2);
}

std::optional<std::uint32_t> RequestIn(std::string_view comment) {
  return NumberBehind<std::uint32_t>(comment, kRequest, 10);
}

std::optional<KeptOfImage> ImageIn(std::string_view comment) {
  const auto checksum = NumberBehind<std::uint32_t>(comment, kChecksum, 16);
  const auto lastByte = NumberBehind<std::uint8_t>(comment, kLastByte, 16);
  if (!checksum.has_value() || !lastByte.has_value()) return std::nullopt;
  return KeptOfImage{*checksum, *lastByte};
}

}  // namespace capture
