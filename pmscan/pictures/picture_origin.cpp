#include "pmscan/pictures/picture_origin.h"

#include "pmscan/report/report.h"
#include "pmscan/report/scanner_facts.h"

namespace pmscan {

PictureOrigin OriginOf(const pmddb832::ScannerSettings& settings) {
  PictureOrigin origin{ModelText(ReadFacts(settings)), "pmscan " PMSCAN_VERSION, {}};
  const std::time_t now = std::time(nullptr);
  if (const std::tm* const date = std::localtime(&now)) origin.date = *date;
  return origin;
}

}  // namespace pmscan
