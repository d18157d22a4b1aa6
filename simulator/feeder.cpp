#include "simulator/feeder.h"

namespace simulator {

bool Feeder::Load() {
  if (jammed) return false;
  if (inPath && !scanned) return true;
  if (next == pages.size()) return false;
  ++next;
  inPath = true;
  scanned = false;
  return true;
}

bool Feeder::Eject() {
  if (!inPath) return false;
  inPath = scanned = jammed = false;
  return true;
}

}  // namespace simulator
