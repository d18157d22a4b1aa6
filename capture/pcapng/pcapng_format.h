#pragma once

#include <cstdint>
#include <string_view>

// The words of pcapng files, and those of a USBPcap pseudo-header.
namespace capture::pcapng {

inline constexpr std::uint32_t kSectionHeader = 0x0A0D0D0A;  // the same in either byte order
inline constexpr std::uint32_t kInterfaceDescription = 1;
inline constexpr std::uint32_t kOldPacket = 2;
inline constexpr std::uint32_t kSimplePacket = 3;
inline constexpr std::uint32_t kInterfaceStatistics = 5;
inline constexpr std::uint32_t kEnhancedPacket = 6;
inline constexpr std::uint32_t kByteOrderMagic = 0x1A2B3C4D;
inline constexpr std::uint32_t kBlockFrameBytes = 12;  // type and length in front, length behind

inline constexpr std::uint16_t kEndOfOptions = 0;
inline constexpr std::uint16_t kComment = 1;
inline constexpr std::uint16_t kInterfaceName = 2;
inline constexpr std::uint16_t kUserApplication = 4;  // of a section header
inline constexpr std::uint16_t kDropCount = 4;        // of an enhanced packet
inline constexpr std::uint16_t kInterfaceDrops = 5;   // of interface statistics
inline constexpr std::uint16_t kTimeResolution = 9;
inline constexpr std::uint16_t kTimeOffset = 14;

// Of the interface of a converted capture: each of its packets is one whole transfer.
inline constexpr std::string_view kDeviceInterface = "still-image device";

}  // namespace capture::pcapng

namespace capture::usb {

// Link types.
inline constexpr std::uint16_t kUsbmon = 189;        // behind a header of 48 bytes
inline constexpr std::uint16_t kUsbmonPadded = 220;  // of 64
inline constexpr std::uint16_t kUsbPcap = 249;

inline constexpr std::uint16_t kUsbPcapHeaderBytes = 27;
inline constexpr std::uint8_t kFromDevice = 1;  // the packet tells of the end of the transfer
inline constexpr std::uint8_t kBulk = 3;
inline constexpr std::uint8_t kInBit = 0x80;  // of an endpoint's address

}  // namespace capture::usb
