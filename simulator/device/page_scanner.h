#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "simulator/device/block_transfer.h"
#include "simulator/device/document_source.h"
#include "simulator/device/gamma_tables.h"
#include "simulator/device/scanner.h"
#include "simulator/device/scanner_config.h"
#include "simulator/tones/image_filters.h"

namespace simulator {

// What the scanners of both families are and do alike: bed and option unit, condition, gamma
// tables, focus, and one transfer at a time.
class PageScanner : public Scanner {
 public:
  // That of the last ESC m. Nothing after a reset.
  const std::optional<simulator::ColorMatrix>& ColorMatrix() const { return colorMatrix_; }

  // The option value that was last sent and accepted; 0 is off.
  std::uint8_t OptionValue() const { return source.Value(); }

  // The position of the last ESC p, 0xFF for automatic focus.
  std::uint8_t FocusPosition() const { return focusPosition_; }

  // How often the byte FF was acknowledged.
  std::uint32_t Ejects() const { return ejects_; }

 protected:
  PageScanner(Equipment fitted, const Manners& firmware, bool feederIsVariant);

  // Commands, and the bytes EM and FF.
  void TakeGammaTable(Bytes selectorAndTable);
  void TakeColorMatrix(Bytes matrix);
  void SwitchOption(Bytes value);
  void Focus(Bytes position);
  void TellFocus(Bytes);
  void FeedPage() override;
  void EjectPage() override;
  void AcknowledgeEject();

  // Answers ESC I.
  void TellLevelData(std::uint8_t status, std::vector<std::uint8_t> data);

  // Answers ESC @: the scanner forgets all but where the paper lies.
  void Forget();

  // The main status byte; each answer with it is one poll of a scanner that warms up.
  std::uint8_t MainStatus() const;
  void CountStatusPoll();

  // Why no document can be scanned now; empty when one can, and then it is ready.
  std::string WhyTransferRefused();
  const Picture& Document() const { return source.Document(equipment_.onBed); }
  void Begin(std::unique_ptr<BlockTransfer> started);

  bool SendMore() override;
  std::optional<std::uint32_t> BlockAwaitingAnswer() const override;
  void ContinueTransfer() override;
  void EndTransfer() override;

  // Gamma tables that came and were not used yet; where none came, those of the code.
  GammaTables TakeGamma(std::uint8_t code);
  bool HasGammaTables() const { return gammaCame_; }

  DocumentSource source;

 private:
  bool WarmingUp() const { return statusPolls_ < defects.warmUpPolls.value_or(0); }

  const Equipment equipment_;
  const Manners manners_;
  std::unique_ptr<BlockTransfer> transfer_;
  std::uint32_t statusPolls_ = 0;
  std::uint32_t transfersRefused_ = 0;
  std::uint32_t ejects_ = 0;
  bool fatal_ = false;
  std::uint8_t focusPosition_ = 0;
  GammaTables gamma_;
  bool gammaCame_ = false;
  std::optional<simulator::ColorMatrix> colorMatrix_;
};

}  // namespace simulator
