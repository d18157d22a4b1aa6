#include "pmscan/report_page/captured_settings.h"

#include <algorithm>
#include <cstring>
#include <variant>

#include "capture/conversation/captured_conversation.h"
#include "capture/decode/decode_replies.h"
#include "capture/file/number_text.h"
#include "capture/file/settings_text.h"
#include "pmscan/report/report.h"

namespace pmscan {
namespace {

using capture::Part;
using capture::SettingsChange;
using pmddb832::ScannerSettings;

std::string TextOf(const SettingsChange& change) {
  const std::string value = ValueText(change);
  return value.empty() ? capture::Counted(change.bytes.size(), "byte") : value;
}

// The member as it stands in the record.
SettingsChange ValueIn(const ScannerSettings& settings, const SettingsChange& change) {
  SettingsChange value = change;
  std::memcpy(value.bytes.data(), reinterpret_cast<const char*>(&settings) + change.offset,
              value.bytes.size());
  return value;
}

ScannerSettings SettingsAtEnd(const capture::Capture& capture) {
  ScannerSettings settings{};
  for (const capture::Entry& entry : capture.entries) {
    if (const auto* const change = std::get_if<SettingsChange>(&entry)) Apply(*change, settings);
  }
  return settings;
}

// Notes what identifying replies say; of several the last one.
class AnswerTaker {
 public:
  void Take(const capture::Transfer& transfer) {
    const bool isReply = Follow(conversation_, transfer) == Part::kReply;
    if (!isReply || !conversation_.IsWhole()) return;
    for (const capture::FieldRow& row :
         capture::DescribeReply(conversation_.Command()->reply, conversation_.Message())) {
      for (const char* const known :
           {"product name", "command level", "basic resolution", "resolutions", "largest area"}) {
        if (row.name == known) Note(row);
      }
    }
  }
  const std::vector<ScannerFact>& Facts() const { return facts_; }

 private:
  void Note(const capture::FieldRow& row) {
    std::string label = row.name;
    label[0] = static_cast<char>(label[0] - 'a' + 'A');
    const auto place = std::find_if(facts_.begin(), facts_.end(),
                                    [&](const ScannerFact& fact) { return fact.label == label; });
    if (place == facts_.end()) {
      facts_.push_back({label, row.value});
    } else {
      place->value = row.value;
    }
  }

  capture::Conversation conversation_;
  std::vector<ScannerFact> facts_;
};

std::vector<ScannerFact> FactsOfAnswers(const capture::Capture& capture) {
  AnswerTaker taker;
  for (const capture::Entry& entry : capture.entries) {
    if (const auto* const transfer = std::get_if<capture::Transfer>(&entry)) taker.Take(*transfer);
  }
  return taker.Facts();
}

}  // namespace

std::vector<ChangedSetting> ChangedSettingsOf(const capture::Capture& capture) {
  std::vector<ChangedSetting> changes;
  ScannerSettings settings{};
  std::size_t begun = 0;
  for (const capture::Entry& entry : capture.entries) {
    if (std::holds_alternative<capture::CallBegin>(entry)) ++begun;
    const auto* const change = std::get_if<SettingsChange>(&entry);
    if (change == nullptr) continue;
    const std::size_t call = change->byModule && begun != 0 ? begun - 1 : begun;
    changes.push_back({capture::FieldAt(change->offset).name, TextOf(ValueIn(settings, *change)),
                       TextOf(*change), change->byModule, call});
    Apply(*change, settings);
  }
  return changes;
}

std::vector<ScannerFact> ScannerFactsOf(const capture::Capture& capture) {
  const ScannerFacts facts = ReadFacts(SettingsAtEnd(capture));
  if (facts.level.empty()) return FactsOfAnswers(capture);
  std::vector<ScannerFact> told{
      {"Model", ModelText(facts)},
      {"Command level",
       facts.level + (facts.isExtended ? ", extended commands" : ", standard commands")}};
  if (facts.highestResolution != 0) {
    told.push_back({"Resolutions", std::to_string(facts.lowestResolution) + " to " +
                                       std::to_string(facts.highestResolution) + " dpi"});
  }
  return told;
}

}  // namespace pmscan
