#pragma once

#include <memory>

#include "pmscan/encoders/byte_file.h"
#include "pmscan/encoders/page_encoder.h"
#include "pmscan/pictures/picture_format.h"

namespace pmscan {

// An encoder of the format for a file that is empty yet, and that outlives it.
std::unique_ptr<PageEncoder> MakeEncoder(Container container, ByteFile& file, PageForm form);

}  // namespace pmscan
