#include "pmscan/decode_command.h"

#include <ostream>

#include "capture/decode.h"
#include "pmscan/capture_file.h"

namespace pmscan {

void RunDecodeCommand(const Options& options, std::ostream& out) {
  out << capture::Decode(ReadCaptureFile(options.readCapture));
}

}  // namespace pmscan
