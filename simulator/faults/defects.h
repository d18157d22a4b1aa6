#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string_view>
#include <variant>

#include "simulator/faults/fault.h"

namespace simulator {

// Stands where defects do, and is none: how many pages lie in the document feeder.
inline constexpr std::string_view kPagesName = "pages";

// What may be wrong with a scanner, each thing off by default; DefectTable() has the sentence on
// each. Lines, blocks and transfers are counted from 0; a transfer is one raw read or raw write.
struct Defects {
  using Flag = bool;
  using Number = std::optional<std::uint32_t>;

  // Answers.
  Flag noProbeReply = false;
  Flag probeReplyWithoutStx = false;
  Number probeReplyBytes;
  Flag replyWithoutStx = false;
  Flag statusUnreadable = false;
  Number nakCommand;     // command letter
  Number nakParameters;  // command letter
  Number lateNak;        // command letter

  // Condition of the scanner.
  Number warmUpPolls;
  Flag notReady = false;
  Flag fatalError = false;
  Flag coverOpen = false;
  Flag transparencyUnitError = false;

  // Image data.
  Flag headerWithoutStx = false;
  Number announcedBlockBytes;
  Number announcedLastBlockBytes;
  Number announcedLineBytes;
  Number announcedLines;
  Number blockLongerBy;
  Number lastBlockShorterBy;
  Number errorAtBlock;
  Number fatalAtBlock;
  Number jamAtLine;
  Flag lastBlockUnmarked = false;

  // On the cable, by the names of the defects: for a FaultInjector before the scanner.
  std::map<std::string_view, Fault> cable;

  // The driver may take the scanner for one of the other family.
  bool SpoilProbe() const {
    return noProbeReply || probeReplyWithoutStx || probeReplyBytes || nakCommand == 'I';
  }

  // The command with that letter is never accepted.
  bool Refuse(char letter) const {
    return nakCommand == static_cast<std::uint32_t>(letter) ||
           nakParameters == static_cast<std::uint32_t>(letter);
  }

  // Blocks come otherwise than the protocol has them: the driver may lose its place.
  bool DisturbBlocks() const {
    return blockLongerBy || announcedBlockBytes || announcedLastBlockBytes || announcedLineBytes ||
           announcedLines || lastBlockUnmarked;
  }
};

// A fault script of one line that is built in.
struct CableFault {
  Defects::Number FaultPlace::*at;
  FaultKind kind;
};

// One defect by its name. Where it is a number, the sentence calls its value N, or X where it is a
// command letter.
struct DefectRow {
  std::string_view name;
  std::variant<Defects::Flag Defects::*, Defects::Number Defects::*, CableFault> what;
  std::string_view sentence;

  bool IsFlag() const { return what.index() == 0; }
};

std::span<const DefectRow> DefectTable();

// The value of a flag is 0 or 1.
void Set(Defects& defects, const DefectRow& row, std::uint32_t value);

// Switches a defect on from "name" or "name=value"; the value is a decimal number or a single
// command letter. Throws std::invalid_argument that says what is wrong and, for an unknown name,
// which names exist.
void SwitchOn(Defects& defects, std::string_view text);

}  // namespace simulator
