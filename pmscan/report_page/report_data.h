#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "capture/file/capture.h"

namespace pmscan {

// All that a report tells of a capture, for the script of its page. `fileName` is that of the
// capture, for its reader.
//
//   file, outcome {sentence, isTrouble}, notes, scanner [[label, value]]
//   activities  [[name, spans, microseconds, sent, received]], in the order of their numbers
//   hostCalls   [[name, count, failed, microseconds]], in the order in which they first came
//   start       microseconds from the begin of the capture to its first entry
//   longest     places of the longest spans, longest first
//   strings     all texts of the four that follow, by their places
//   spans       columns of the time between two entries: kinds, a letter each (b and e: a call's
//               begin and end; w and r: a write and a read); activities, a digit each; lengths
//               (microseconds), bytes and hex (place of a string, -1 where the bytes are none to be
//               told)
//   failures    of spans with a transfer that failed or was short: [place, asked for, result]
//   calls       [heading, results, settings by the host, settings by the module (strings), 1 failed
//               + 2 never returned + 4 no call: outside of them, spans, exchanges]
//   exchanges   columns: titles, parts (strings), blocks (number, 0 for a command), troubles (a
//               digit each), lines (of the file, 0 for none), rows (place, -1 for none), spans
//   rows        [[[name, value, isTrouble]]], of the exchanges
//   cycles      of calls that repeat those in front of them: [first, calls, repetitions]
//   pages       {width, height, hostLines, dotsPerInch, form, isWhole, blocks [[lines, bytes,
//               hasError]], bands [lines], image, imageLines}; image is empty where none is to be
//               shown
//   settings    [[call's place or -1, member, before, after, by the module]]
nlohmann::ordered_json ReportData(const capture::Capture& capture, const std::string& fileName,
                                  bool showsPictures);

}  // namespace pmscan
