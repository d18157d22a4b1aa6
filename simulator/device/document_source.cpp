#include "simulator/device/document_source.h"

#include <utility>

#include "simulator/device/status_bits.h"

namespace simulator {

DocumentSource::DocumentSource(Equipment& equipment, bool feederIsVariant)
    : unit(equipment.optionUnit),
      variant(feederIsVariant),
      coverOpen(equipment.defects.coverOpen),
      transparencyUnitError(equipment.defects.transparencyUnitError),
      feeder(std::move(equipment.feederPages), equipment.feederCopies) {}

std::string DocumentSource::WhyImpossible(std::uint8_t optionValue) const {
  if (optionValue == 0) return {};
  if (unit == OptionUnit::kNone) return "no option unit is fitted";
  if (optionValue == 1 || (HasFeeder() && variant)) return {};
  return "the option unit knows the values 0 and 1, not " + std::to_string(optionValue);
}

std::string DocumentSource::WhyNoDocument() {
  if (IsTransparencyUnit() && transparencyUnitError) return "the transparency unit has an error";
  if (!IsFeeder()) return {};
  if (coverOpen) return "the document feeder's cover is open";
  return feeder.Load() ? "" : "the document feeder has no page that it can load";
}

void DocumentSource::ScanEnded(bool jammed) {
  if (jammed) feeder.Jam();
  if (IsFeeder()) feeder.PageWasScanned();
}

bool DocumentSource::Feed() {
  return !coverOpen && feeder.Load();
}

bool DocumentSource::Eject() {
  return !coverOpen && feeder.Eject();
}

std::uint8_t DocumentSource::FeederStatus() const {
  if (!HasFeeder()) return 0;
  const int conditions = (feeder.PaperOut() ? status_bits::kPaperOut : 0) |
                         (coverOpen ? status_bits::kCoverOpen : 0) |
                         (feeder.Jammed() ? status_bits::kJam : 0);
  const int summary = conditions != 0 ? status_bits::kUnitError : 0;
  return static_cast<std::uint8_t>(status_bits::kInstalled | summary | conditions);
}

std::uint8_t DocumentSource::TransparencyStatus() const {
  if (unit != OptionUnit::kTransparencyUnit) return 0;
  const int error = transparencyUnitError ? status_bits::kUnitError | status_bits::kJam : 0;
  return static_cast<std::uint8_t>(status_bits::kInstalled | error);
}

}  // namespace simulator
