#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "capture/file/capture.h"

// What a packet does not tell of its transfer stands in its comment, in these sentences.
namespace capture {

// Image data of which only the length was kept.
struct KeptOfImage {
  std::uint32_t checksum = 0;
  std::uint8_t lastByte = 0;

  bool operator==(const KeptOfImage&) const = default;
};

// Empty for a read that brought all that was asked for, and for a write.
std::string RequestRemark(const Transfer& transfer);
// Empty where the bytes were kept.
std::string ImageRemark(const Transfer& transfer);

// What the sentences in a comment say; nothing where there is none.
std::optional<std::uint32_t> RequestIn(std::string_view comment);
std::optional<KeptOfImage> ImageIn(std::string_view comment);

}  // namespace capture
