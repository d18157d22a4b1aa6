#pragma once

#include <cstdint>
#include <string>

namespace capture {

// The result of a transfer that failed, and what it means, whatever system it came from: a HRESULT
// of a Windows error, or what a bus trace tells, a status of USBPcap or an error number of usbmon.
// "0x8007048F, the device is not connected"; the number alone where it has no words.
std::string ResultText(std::int32_t result);

}  // namespace capture
