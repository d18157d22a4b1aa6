#include "platform/trace.h"

namespace pmddb832::platform {

void WriteEntering(TraceLog& log, const char* name) {
  WriteTrace(log, "%s, entering", name, kDetailEnteringAndLeaving);
}

void WriteLeaving(TraceLog& log, const char* name) {
  WriteTrace(log, "%s, leaving", name, kDetailEnteringAndLeaving);
}

}  // namespace pmddb832::platform
