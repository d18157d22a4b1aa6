#pragma once

#include <cstdint>
#include <vector>

#include "capture/file/capture.h"

namespace capture {

// The conversation as a pcapng file that network analysers open: one USB bulk transfer for each
// transfer of the capture, behind a USBPcap pseudo-header (link type 249), on bus 1, device 1, bulk
// endpoints 0x02 (out) and 0x81 (in).
//
// Time begins at 0. Image data of which the capture keeps only the length becomes a packet that is
// cut behind the pseudo-header: its original length is the real one; its comment tells the
// checksum. The host's calls stand in the comment of the packet that follows.
std::vector<std::uint8_t> ToPcapng(const Capture& capture);

}  // namespace capture
