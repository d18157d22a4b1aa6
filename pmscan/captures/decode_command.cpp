#include "pmscan/captures/decode_command.h"

#include <ostream>

#include "capture/decode/decode.h"
#include "pmscan/captures/capture_file.h"

namespace pmscan {

void RunDecodeCommand(const Options& options, std::ostream& out) {
  out << capture::Decode(ReadCaptureFile(options.readCapture));
}

}  // namespace pmscan
