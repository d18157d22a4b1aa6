#include "capture/decode/result_words.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "capture/decode/decode_fields.h"

namespace capture {
namespace {

struct ResultRow {
  std::uint32_t result;
  std::string_view words;
};

constexpr std::string_view kTimeIsUp = "it took too long";
constexpr std::string_view kNotConnected = "the device is not connected";
constexpr std::string_view kBusError = "the bus failed";
constexpr std::string_view kCancelled = "it was cancelled";
constexpr std::string_view kStalled = "the device refused it";

constexpr std::array kResults{
    // Errors of Windows.
    ResultRow{0x80070005, "access was denied"},
    ResultRow{0x80070006, "the device is not open"},
    ResultRow{0x80070015, "the device is not ready"},
    ResultRow{0x80070016, "the device does not know the command"},
    ResultRow{0x8007001F, "the device does not work"},
    ResultRow{0x80070020, "another program has the device"},
    ResultRow{0x80070021, "another program has the device"},
    ResultRow{0x80070037, "the device is not there any more"},
    ResultRow{0x80070079, kTimeIsUp},
    ResultRow{0x80070102, kTimeIsUp},
    ResultRow{0x800703E3, kCancelled},
    ResultRow{0x8007045D, kBusError},
    ResultRow{0x8007048F, kNotConnected},
    ResultRow{0x800705B4, kTimeIsUp},
    // Statuses of USBPcap.
    ResultRow{0xC0000004, kStalled},
    ResultRow{0xC0000011, kBusError},
    ResultRow{0xC0010000, kCancelled},
    // Error numbers of usbmon.
    ResultRow{0xFFFFFF92, kTimeIsUp},
    ResultRow{0xFFFFFF94, kNotConnected},
    ResultRow{0xFFFFFF98, kCancelled},
    ResultRow{0xFFFFFFAC, kBusError},
    ResultRow{0xFFFFFFB5, "more came than was asked for"},
    ResultRow{0xFFFFFFB9, kBusError},
    ResultRow{0xFFFFFFE0, kStalled},
    ResultRow{0xFFFFFFED, kNotConnected},
    ResultRow{0xFFFFFFFE, kCancelled},
};

}  // namespace

std::string ResultText(std::int32_t result) {
  const auto number = static_cast<std::uint32_t>(result);
  const auto* const row =
      std::find_if(kResults.begin(), kResults.end(),
                   [number](const ResultRow& each) { return each.result == number; });
  return HexNumber(number) + (row == kResults.end() ? "" : ", " + std::string(row->words));
}

}  // namespace capture
