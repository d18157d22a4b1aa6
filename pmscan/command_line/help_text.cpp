#include "pmscan/command_line/help_text.h"

#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

constexpr std::string_view kPage = R"(pmscan - scan a page with a scanner of the Pmddb832 module

Synopsis
  pmscan scan -o FILE [options]     scan into a picture file
  pmscan scan --batch NAME [options]
                                    scan page by page until the feeder is empty
  pmscan info [options]             tell what the scanner is and has
  pmscan devices [--json]           list the scanners that --device can name
  pmscan replay FILE [options]      play a capture against the module and compare
  pmscan decode FILE                tell what was said in a capture
  pmscan convert FILE -o FILE.pcapng
                                    write a capture for Wireshark
  pmscan --help                     print this page

Examples
  pmscan scan -o page.png
  pmscan scan -o page.tif --mode deep-colour --resolution 600
  pmscan scan -o stamp.png --area 1in,1in,50mm,2in
  pmscan scan --batch page%03d.png --source feeder --device sim:extended:QM2500+pages=3
  pmscan scan --mode lineart --resolution 200 --save-profile letters
  pmscan scan -o letter.tif --profile letters
  pmscan scan -o page.png --resolution 600 --dry-run
  pmscan info --device sim:extended:QM2700
  pmscan scan -o page.png --capture jam.capture
  pmscan replay jam.capture
  pmscan decode jam.capture
  pmscan convert jam.capture -o jam.pcapng

Options of scan and info
  --device NAME      the scanner: sim:extended or sim:standard, with :MODEL behind it
                     for a certain model and +DEFECT for a faulty one; sim:FILE.json,
                     a simulated scanner by profile; or sti:NAME, a still-image device
                     of this system (default sim:extended)
  --faults FILE      a script of faults that strike on the cable of a simulated scanner
  --dll PATH         the module (default: Pmddb832.dll beside this program)
  --json             print the report as JSON
  --capture FILE     record all that host, module and scanner say to each other, as
                     text; of the picture's data length and checksum only
  --capture-data     record the picture's data too

Options of scan
  -o, --output FILE  the picture: .png, .tif, .tiff, .bmp, .jpg or .jpeg
  --batch NAME       a file for each page, with its number for %d or %03d in NAME; or
                     one .tif file for all of them
  --pages N          how many pages at most (default: one with -o, with --batch all
                     that the feeder holds)
  --wait-for-paper[=SECONDS]
                     how long to wait when the feeder is empty (60 without a number)
  --overwrite        replace files of the same name; without it nothing is scanned
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
  --progress STYLE   how far the scan is, on standard error: bar, json (an object a
                     line) or none (default: bar on a terminal, else none)
  --dry-run          scan nothing; print what a simulated scanner would be sent
  --save-profile NAME
                     keep the options of this scan, but for its files
  --profile NAME     take the options that were kept; those given besides win

Ctrl+C ends a scan: the scanner is cancelled, and the lines that came are kept.

Options of replay
  --tolerant         go on behind a difference, and count them
  -o, --output FILE  write the first picture of the capture; recorded with
                     --capture-data it is the same again
  --dll PATH, --overwrite
                     as above

Options of convert
  -o, --output FILE  the pcapng file; the Wireshark dissector is in docs/wireshark
  --overwrite        replace a file of that name

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
    page.append(RightAligned(row.ExitCode())).append("  ").append(row.meaning).append("\n");
  }
  return page;
}

}  // namespace pmscan
