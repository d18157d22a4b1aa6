#pragma once

#include "pmscan/pictures/imaging_component.h"

namespace pmscan {

// Whether the component's PNG encoder needs 16-bit samples with their high byte first. That is the
// order of PNG files, and the component's callers should not have to know it; but the encoder of
// some versions of Wine stores the samples as they lie in memory, so that what was written is read
// back with its bytes swapped. Tried out with a picture of one pixel, in memory.
bool NeedsSwappedSamples(const ComPointer<IWICImagingFactory>& factory);

}  // namespace pmscan
