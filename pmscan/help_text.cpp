#include "pmscan/help_text.h"

#include "pmscan/error_codes.h"

namespace pmscan {
namespace {

constexpr std::string_view kPage = R"(pmscan - scan a page with a scanner of the Pmddb832 module

Synopsis
  pmscan scan -o FILE [options]     scan into a picture file
  pmscan info [options]             tell what the scanner is and has
  pmscan --help                     print this page

Examples
  pmscan scan -o page.png
  pmscan scan -o page.tif --mode deep-colour --resolution 600
  pmscan scan -o stamp.png --area 1in,1in,50mm,2in
  pmscan scan -o letter.png --mode lineart --source feeder --progress
  pmscan info --device sim:extended:QM2700

Options of both commands
  --device NAME      the scanner: sim:extended or sim:standard, with :MODEL behind it
                     for a certain model and +DEFECT for a faulty one
                     (default sim:extended)
  --dll PATH         the module (default: Pmddb832.dll beside this program)

Options of scan
  -o, --output FILE  the picture: .png, .tif, .tiff, .bmp, .jpg or .jpeg
  --mode MODE        lineart      1 bit: black and white
                     grey         8 bits
                     colour       24 bits (default)
                     colour12     12 bits, written as 24
                     palette      216 fixed colours; not with extended commands
                     deep-grey    16 bits, in .png and .tif
                     deep-colour  48 bits, in .png and .tif
  --resolution DPI   dots per inch (default 300)
  --area LEFT,TOP,WIDTH,HEIGHT
                     the part to scan, each length with its unit: in, mm, cm, px
                     (default: all that the source has)
  --source SOURCE    flatbed (default), feeder or transparency
  --mirror           swap left and right
  --invert           swap black and white, in mode lineart
  --original FILE    the picture that lies on a simulated scanner
                     (default: a built-in test page)
  --warm-up SECONDS  how long to wait for a scanner that warms up (default 60)
  --progress         tell on standard error how far the scan is

A file of the same name is replaced, and only once the scan is complete.

Exit codes
    0  done
)";

std::string RightAligned(int number) {
  std::string text = std::to_string(number);
  return text.insert(0, 5 - text.size(), ' ');
}

}  // namespace

std::string HelpText() {
  std::string page(kPage);
  for (const ErrorCode& row : kErrorCodes) {
    page.append(RightAligned(row.exitCode)).append("  ").append(row.meaning).append("\n");
  }
  return page;
}

}  // namespace pmscan
