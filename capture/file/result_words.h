#pragma once

#include <cstdint>
#include <string_view>

namespace capture {

// What the result of a transfer that failed means, whatever system it came from: a HRESULT of a
// Windows error, or what a bus trace tells, a status of USBPcap or an error number of usbmon.
// "the device is not connected"; empty for a number without words.
std::string_view ResultWords(std::int32_t result);

}  // namespace capture
