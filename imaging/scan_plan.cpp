#include "imaging/scan_plan.h"

#include "interface/scanner_settings.h"

namespace pmddb832 {

void TakeArea(ScanPlan& plan, const ScannerSettings& settings) {
  plan.width = settings.areaWidthPx;
  plan.height = settings.areaHeightPx;
  plan.left = settings.areaLeftPx;
  plan.top = settings.areaTopPx;
}

}  // namespace pmddb832
