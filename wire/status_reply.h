#pragma once

#include "wire/named_field.h"
#include "wire/status_bits.h"
#include "wire/value_names.h"
#include "wire/wire_block.h"

namespace pmddb832 {

// Reply to ESC "f", header first. Areas are in pixels at the last resolution. Bytes that the
// scanner did not send are 0.
using StatusReply = ReplyBuffer;

namespace status_reply {

inline constexpr Field<std::uint8_t, 1> kHeaderStatus;
inline constexpr Field<std::uint8_t, 4> kMain;
inline constexpr Field<std::uint8_t, 5> kFeeder;
inline constexpr Field<std::uint16_t, 6> kFeederWidth;
inline constexpr Field<std::uint16_t, 8> kFeederHeight;
inline constexpr Field<std::uint8_t, 10> kTransparency;
inline constexpr Field<std::uint16_t, 11> kTransparencyWidth;
inline constexpr Field<std::uint16_t, 13> kTransparencyHeight;

inline constexpr std::uint8_t kHeaderError = 0x80;  // header status

// main status of a scanner with a feeder
inline constexpr std::uint8_t kFeederVariant = 0x20;
inline constexpr std::uint8_t kSecondFeederCapability = 0x10;

inline constexpr std::array kHeaderStatusNames{ValueName{kHeaderError, "error", true}};
inline constexpr std::array kMainNames{
    ValueName{status::kFatalError, "fatal error", true},
    ValueName{kFeederVariant, "feeder variant"},
    ValueName{kSecondFeederCapability, "second feeder capability"},
    ValueName{status::kWarmUp, "warming up", true},
};

inline constexpr std::array kFields{
    NamedFlags("header status", kHeaderStatus, kHeaderStatusNames),
    NamedFlags("main status", kMain, kMainNames),
    NamedFlags("feeder", kFeeder, names::kFeederStatus),
    Named("feeder width", kFeederWidth, "pixels"),
    Named("feeder height", kFeederHeight, "pixels"),
    NamedFlags("transparency unit", kTransparency, names::kTransparencyStatus),
    Named("transparency unit width", kTransparencyWidth, "pixels"),
    Named("transparency unit height", kTransparencyHeight, "pixels"),
};

}  // namespace status_reply
}  // namespace pmddb832
