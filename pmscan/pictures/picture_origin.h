#pragma once

#include "interface/scanner_settings.h"
#include "pmscan/encoders/page_encoder.h"

namespace pmscan {

// The scanner that the settings tell of, once it is open; this program, now.
PictureOrigin OriginOf(const pmddb832::ScannerSettings& settings);

}  // namespace pmscan
