#include "simulator/faults/defects.h"

#include <array>
#include <charconv>
#include <stdexcept>
#include <string>
#include <vector>

#include "simulator/catalog/nearest_name.h"

namespace simulator {
namespace {

using D = Defects;

// clang-format off
constexpr std::array kTable{
    DefectRow{"no-probe-reply", &D::noProbeReply,
        "ESC I is never answered."},
    DefectRow{"probe-reply-without-stx", &D::probeReplyWithoutStx,
        "The four header bytes that answer ESC I begin with NAK, and no data follow."},
    DefectRow{"probe-reply-bytes", &D::probeReplyBytes,
        "The answer to ESC I announces and carries N data bytes, cut or filled with zeros."},
    DefectRow{"reply-without-stx", &D::replyWithoutStx,
        "Information replies but that to ESC I are four bytes that begin with NAK."},
    DefectRow{"status-unreadable", &D::statusUnreadable,
        "The status queries are never answered."},
    DefectRow{"nak-command", &D::nakCommand,
        "The command with the letter X is answered with a single NAK."},
    DefectRow{"nak-parameters", &D::nakParameters,
        "The command with the letter X is acknowledged, and its parameter block is answered with "
        "NAK."},
    DefectRow{"late-nak", &D::lateNak,
        "The parameter block of the command with the letter X is answered, and a NAK comes late: "
        "every later answer is one byte out of step, until a reset."},
    DefectRow{"warm-up", &D::warmUpPolls,
        "The first N status replies, the one at open included, report warming up; no transfer "
        "starts before."},
    DefectRow{"not-ready", &D::notReady,
        "The status reports not ready, and no transfer starts."},
    DefectRow{"fatal-error", &D::fatalError,
        "The status reports a fatal error, and no transfer starts."},
    DefectRow{"cover-open", &D::coverOpen,
        "The document feeder's cover is open: the status reports it, and no page moves."},
    DefectRow{"transparency-unit-error", &D::transparencyUnitError,
        "The transparency unit reports an error, and no transfer starts on it."},
    DefectRow{"header-without-stx", &D::headerWithoutStx,
        "Transfer headers begin with NAK, and no data follow."},
    DefectRow{"announced-block-bytes", &D::announcedBlockBytes,
        "Extended: the transfer header announces N bytes in a full block, and the blocks are that "
        "long: cut or filled with FF."},
    DefectRow{"announced-last-block-bytes", &D::announcedLastBlockBytes,
        "Extended: the transfer header announces N bytes in the last block, and it is that long: "
        "cut or filled with FF."},
    DefectRow{"announced-line-bytes", &D::announcedLineBytes,
        "Standard: block headers announce N bytes a line, and the lines are that long: cut or "
        "filled with FF."},
    DefectRow{"announced-lines", &D::announcedLines,
        "Standard: the headers of full blocks announce N lines, and the blocks have as many: cut "
        "or filled with FF."},
    DefectRow{"block-longer-by", &D::blockLongerBy,
        "Every full block carries N bytes of FF more than announced, behind its lines."},
    DefectRow{"last-block-shorter-by", &D::lastBlockShorterBy,
        "The last block carries N bytes less than announced."},
    DefectRow{"last-block-unmarked", &D::lastBlockUnmarked,
        "Standard: no block is marked as the last one; the driver's answer to it ends the "
        "transfer."},
    DefectRow{"error-at-block", &D::errorAtBlock,
        "Block N reports an error and ends the transfer; the status query knows of no cause."},
    DefectRow{"fatal-at-block", &D::fatalAtBlock,
        "Block N reports an error and ends the transfer; the status query reports a fatal error "
        "from then on."},
    DefectRow{"jam-at-line", &D::jamAtLine,
        "A page of the document feeder jams at line N: its block reports an error, and the status "
        "query reports a jam until the page is out."},
    DefectRow{"unplugged-at-byte", CableFault{&FaultPlace::byte, FaultKind::kUnplug},
        "The cable is pulled out when N bytes have passed, both directions taken together."},
    DefectRow{"unplugged-at-transfer", CableFault{&FaultPlace::transfer, FaultKind::kUnplug},
        "The cable is pulled out before transfer N."},
    DefectRow{"short-read-at-transfer", CableFault{&FaultPlace::readFrom, FaultKind::kHalve},
        "The first read from transfer N on succeeds with half of its bytes; the rest is lost."},
};
// clang-format on

const DefectRow& FindRow(std::string_view name) {
  std::vector<std::string_view> names{kPagesName};
  for (const DefectRow& row : kTable) {
    if (row.name == name) return row;
    names.push_back(row.name);
  }
  const std::string meant = SuggestName(name, names);
  throw std::invalid_argument(
      "no defect is named \"" + std::string(name) + "\"" +
      (meant.empty() ? "; docs/simulator-profiles.md lists them, and \"pages=N\"" : meant));
}

std::uint32_t ParseValue(std::string_view name, std::string_view value) {
  std::uint32_t number = 0;
  const char* const end = value.data() + value.size();
  const auto [stop, error] = std::from_chars(value.data(), end, number);
  if (error == std::errc{} && stop == end) return number;
  if (value.size() == 1) return static_cast<unsigned char>(value[0]);
  throw std::invalid_argument("the defect " + std::string(name) +
                              " needs a number or a letter, as in \"" + std::string(name) +
                              "=7\", and got \"" + std::string(value) + "\"");
}

}  // namespace

std::span<const DefectRow> DefectTable() {
  return kTable;
}

void Set(Defects& defects, const DefectRow& row, std::uint32_t value) {
  if (row.IsFlag()) {
    defects.*std::get<Defects::Flag Defects::*>(row.what) = value != 0;
  } else if (const auto* const number = std::get_if<Defects::Number Defects::*>(&row.what)) {
    defects.** number = value;
  } else {
    const CableFault& script = std::get<CableFault>(row.what);
    Fault& fault = defects.cable[row.name];
    fault.kind = script.kind;
    fault.at.*script.at = value;
  }
}

void SwitchOn(Defects& defects, std::string_view text) {
  const std::size_t equals = text.find('=');
  const std::string_view name = text.substr(0, equals);
  const DefectRow& row = FindRow(name);
  const bool hasValue = equals != std::string_view::npos;
  if (row.IsFlag() && hasValue) {
    throw std::invalid_argument("the defect " + std::string(name) + " has no value");
  }
  const std::string_view value = hasValue ? text.substr(equals + 1) : std::string_view{};
  Set(defects, row, row.IsFlag() ? 1 : ParseValue(name, value));
}

}  // namespace simulator
