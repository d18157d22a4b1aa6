#pragma once

#include <cstdint>

#include "imaging/scan_line.h"

// Each routine turns raw lines into rows of the host's image. Of each line it converts the first
// pixelCount - pad pixels in order and writes `pad` fill pixels behind them: white (every byte
// 0xFF) with `whiteFill`, else the last converted pixel again; 0 where no pixel was converted. A
// pad of 0 or below writes no fill.
//
// A line that holds fewer bytes than that takes, or a row that has less room, is converted as far
// as whole pixels go, and the rest of the row is white. Source and row must not overlap.
namespace pmddb832::Scanutil {

// 1 bit a pixel: pixelCount counts bytes, pad counts pixels. Copies all bytes, each inverted when
// `invert` is set, and appends the pad rounded up to whole bytes. The fill byte is the last source
// byte as read, not inverted.
void Pix2Mono(const ScanLines& lines, const HostRows& rows, std::int16_t pad, bool invert,
              bool whiteFill);

// 8-bit grey, unchanged. A negative pad fills -pad pixels; with `trim`, a positive pad skips that
// many source bytes instead, and nothing is filled.
void Pix256MonoFinal(const ScanLines& lines, const HostRows& rows, std::int16_t pad, bool trim,
                     bool whiteFill);

// 8-bit grey, darkened for the preview: k becomes k - k / 11, and 255 becomes 234.
void Pix256MonoPreview(const ScanLines& lines, const HostRows& rows, std::int16_t pad,
                       bool whiteFill);

// Three planes of 4-bit samples, two pixels a byte with the first in the high nibble, to indices
// into a 6 x 6 x 6 colour cube. plane0 has the greatest weight with `firstPlaneLeads`, plane2
// without.
void Pix256Color(const ScanLines& lines, const HostRows& rows, bool firstPlaneLeads,
                 std::int16_t pad, bool whiteFill);

// 3 bytes a pixel, in reverse order with `swapChannels`.
void PixTrueColor(const ScanLines& lines, const HostRows& rows, bool swapChannels, std::int16_t pad,
                  bool whiteFill);

// Two pixels in three bytes, one channel a byte and the first pixel in the high nibbles, to 2 bytes
// a pixel: third channel, then second and first channel in the high and the low nibble.
void Pix4096Color(const ScanLines& lines, const HostRows& rows, std::int16_t pad, bool whiteFill);

// Three little-endian 16-bit samples a pixel, in reverse order with `swapChannels`; with `reduce`,
// the high byte of each sample.
void PixSuperColor(const ScanLines& lines, const HostRows& rows, bool swapChannels,
                   std::int16_t pad, bool reduce, bool whiteFill);

// 16-bit grey, unchanged. Pad and `trim` as for Pix256MonoFinal; the skipped pad counts bytes.
void Pix4096Mono(const ScanLines& lines, const HostRows& rows, std::int16_t pad, bool trim,
                 bool whiteFill);

}  // namespace pmddb832::Scanutil
