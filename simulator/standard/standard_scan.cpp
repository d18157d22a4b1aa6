#include <array>
#include <utility>

#include "simulator/device/protocol_bytes.h"
#include "simulator/standard/standard_blocks.h"
#include "simulator/standard/standard_scanner.h"

// A scan on the standard scanner: the start of the transfer, in block mode or line by line.

namespace simulator {

// A driver expects block mode even where a defect kept ESC d from being accepted.
void StandardScanner::StartTransfer(Bytes) {
  if (defects.Refuse('d')) ExcuseOutOfStep();
  const bool repeated = std::exchange(startRefused_, false);
  std::string reason = WhyRequestImpossible();
  if (reason.empty()) reason = WhyTransferRefused();
  if (reason.empty()) {
    BeginTransfer(repeated);
    return;
  }
  NoteRefusal("transfer refused: " + reason);
  RefuseStart(repeated);
}

// The first refusal asks the driver to start once more. In line mode the answer to that is a
// line's header, which cannot tell of an error but by its first byte.
void StandardScanner::RefuseStart(bool repeated) {
  startRefused_ = !repeated;
  const bool unclear = repeated && !Parameters('d');
  std::vector<std::uint8_t> header{unclear ? kNak : kStx, block_header::kError};
  header.resize(unclear ? block_header::kLineModeBytes : block_header::kBytes);
  Answer(header);
}

void StandardScanner::SpoilStart(std::vector<std::uint8_t> header, bool linesAtOnce) {
  header[0] = kNak;
  header.resize(linesAtOnce ? block_header::kLineModeBytes : block_header::kBytes);
  Answer(header);
  ExcuseReading();
}

// In block mode the answer is the first block's header; in line mode it is a header of its own, but
// behind a refused start the lines come at once.
void StandardScanner::BeginTransfer(bool repeated) {
  const auto linesPerBlock = Parameters('d');
  const BlockTransfer::Manner manner{
      .linesPerBlock = linesPerBlock ? linesPerBlock->front() : 1U,
      .lastUnmarked = defects.lastBlockUnmarked,
      .fromFeeder = source.IsFeeder(),
      .lineBytes = defects.announcedLineBytes,
  };
  const auto mode =
      linesPerBlock ? StandardTransfer::Mode::kBlocks : StandardTransfer::Mode::kLines;
  auto started =
      std::make_unique<StandardTransfer>(LineSource(Document(), *Request()), manner, mode, defects);
  const bool linesAtOnce = repeated && mode == StandardTransfer::Mode::kLines;
  if (defects.headerWithoutStx) {
    SpoilStart(started->StartHeader(), linesAtOnce);
    return;
  }
  if (mode == StandardTransfer::Mode::kLines && !linesAtOnce) Answer(started->StartHeader());
  Begin(std::move(started));
}

}  // namespace simulator
