#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "bench/memory_scanner.h"
#include "interface/scanner_settings.h"

namespace pmddb832::bench {

// Turns one raw line into one row of the host's image.
using RowStep = void (*)(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels);

struct Scan {
  Family family;
  const char* type;
  std::uint32_t pixelType;
  std::uint32_t outputFormat;
  std::uint32_t rawBits;   // of a pixel
  std::uint32_t hostBits;  // of a pixel
  RowStep row;
  std::uint8_t invert = 0;
  std::uint32_t preview = 0;
  std::uint32_t widest = 10200;  // pixels that the set takes in a line
};

extern const std::span<const Scan> kScans;

// A letter page of a scan, and how the host takes it.
struct Page {
  const Scan* scan;
  std::uint32_t resolution;     // dots per inch
  std::size_t bufferBytes = 0;  // of the host, used again and again; 0 when it holds the whole page

  std::string Name() const;
  std::uint32_t Width() const;   // pixels
  std::uint32_t Height() const;  // lines
  std::size_t Bytes() const;     // the average of those in the scanner and those of the host
  ScannerSettings Settings(MemoryScanner& scanner) const;
};

// What a scanner serves, and the host's buffer: room for the longest page, all of it resident after
// MakePagesResident.
std::span<const std::uint8_t> ScannerMemory();
std::span<std::uint8_t> HostMemory();
void MakePagesResident();

// Copies as many bytes as the page has from the scanner's memory to the host's.
void CopyOnce(const Page& page);

// Does by hand what any driver must: copies a block out of the scanner's memory, then turns each of
// its lines into a row.
void CopyInTwoSteps(const Page& page);

}  // namespace pmddb832::bench
