#pragma once

#include <cstddef>
#include <cstdint>

namespace simulator {

// Layouts of the extended command set, little-endian, as the device knows them.

namespace identity_block {  // reply to FS I
inline constexpr std::size_t kBytes = 80;
inline constexpr std::size_t kLevel = 0;  // two characters
inline constexpr std::size_t kBasicResolution = 4;
inline constexpr std::size_t kMinResolution = 8;
inline constexpr std::size_t kMaxResolution = 12;
inline constexpr std::size_t kFlatbedWidth = 20;
inline constexpr std::size_t kFlatbedHeight = 24;
inline constexpr std::size_t kFeederWidth = 28;
inline constexpr std::size_t kFeederHeight = 32;
inline constexpr std::size_t kTransparencyWidth = 36;
inline constexpr std::size_t kTransparencyHeight = 40;
inline constexpr std::size_t kFeederFlags = 44;  // one byte
inline constexpr std::size_t kProductName = 46;  // 16 characters
inline constexpr std::size_t kProductNameBytes = 16;
}  // namespace identity_block

namespace status_block {  // reply to FS F
inline constexpr std::size_t kBytes = 16;
inline constexpr std::size_t kMain = 0;
inline constexpr std::size_t kFeeder = 1;
inline constexpr std::size_t kTransparency = 2;
}  // namespace status_block

namespace parameter_block {  // sent after FS W
inline constexpr std::size_t kBytes = 64;
inline constexpr std::size_t kMainResolution = 0;
inline constexpr std::size_t kSubResolution = 4;
inline constexpr std::size_t kLeft = 8;
inline constexpr std::size_t kTop = 12;
inline constexpr std::size_t kWidth = 16;
inline constexpr std::size_t kHeight = 20;
inline constexpr std::size_t kColorMode = 24;
inline constexpr std::size_t kBits = 25;
inline constexpr std::size_t kOption = 26;
inline constexpr std::size_t kLinesPerBlock = 28;
inline constexpr std::size_t kGamma = 29;
inline constexpr std::size_t kBrightness = 30;
inline constexpr std::size_t kColorCorrection = 31;
inline constexpr std::size_t kHalftone = 32;
inline constexpr std::size_t kThreshold = 33;  // 0: the usual one
inline constexpr std::size_t kSharpness = 35;
inline constexpr std::size_t kMirror = 36;
inline constexpr std::size_t kReserved = 38;  // from here on every byte is 0
}  // namespace parameter_block

namespace transfer_header {  // reply to FS G
inline constexpr std::size_t kBytes = 14;
inline constexpr std::size_t kStatus = 1;
inline constexpr std::size_t kBlockBytes = 2;
inline constexpr std::size_t kFullBlocks = 6;
inline constexpr std::size_t kLastBlockBytes = 10;
}  // namespace transfer_header

// Bit 7 of the transfer header's status byte and of the status byte behind each block.
inline constexpr std::uint8_t kTransferError = 0x80;

}  // namespace simulator
