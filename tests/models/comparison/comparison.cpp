#include "tests/models/comparison/comparison.h"

#include <algorithm>

#include "tests/models/comparison/module_run.h"

namespace pmddb832::models {
namespace {

std::string Number(const char* what, std::uint64_t expected, std::uint64_t actual) {
  if (expected == actual) return "";
  return std::string(what) + ": expected " + std::to_string(expected) + ", got " +
         std::to_string(actual);
}

template <std::size_t kCount>
std::string Words(const char* what, const std::array<std::uint32_t, kCount>& expected,
                  const std::array<std::uint32_t, kCount>& actual) {
  for (std::size_t i = 0; i < kCount; ++i) {
    const std::string difference = Number(what, expected[i], actual[i]);
    if (!difference.empty()) return difference + " at offset " + std::to_string(4 * i);
  }
  return "";
}

std::string Labelled(const char* what, const std::string& difference) {
  return difference.empty() ? "" : std::string(what) + ", " + difference;
}

std::string Difference(const Outcome& expected, const Outcome& actual) {
  const std::string differences[] = {
      Number("result", expected.result, actual.result),
      Number("PMGetScanError", expected.error, actual.error),
      Words("set-up record", expected.setup, actual.setup),
      Words("band record", expected.band, actual.band),
      Number("paper width", expected.paperWidth, actual.paperWidth),
      Number("paper height", expected.paperHeight, actual.paperHeight),
      Labelled("image", FirstDifference(expected.image, actual.image))};
  for (const std::string& difference : differences) {
    if (!difference.empty()) return difference;
  }
  return "";
}

std::string Difference(const std::array<Record, 2>& expected, const std::array<Record, 2>& actual) {
  for (std::size_t i = 0; i < 2; ++i) {
    const std::string difference = FirstDifference(expected[i].bytes, actual[i].bytes);
    if (!difference.empty()) return "settings record " + std::to_string(i) + ", " + difference;
  }
  return "";
}

void CountEvents(const std::vector<Event>& events, Tally& tally) {
  for (const Event& event : events) {
    const bool isTransfer = event.kind == Event::Kind::kRead || event.kind == Event::Kind::kWrite;
    tally.transfers += isTransfer;
    tally.faults +=
        !event.succeeds || (event.kind == Event::Kind::kRead && event.bytes.size() != event.value);
    tally.focusRuns += event.kind == Event::Kind::kSleep;
    if (event.kind != Event::Kind::kWrite) continue;
    tally.ejects += event.bytes == Bytes{0x0C};
    tally.cancels += event.bytes == Bytes{0x18};
  }
}

void Count(const HostCall& call, const Outcome& outcome, Tally& tally) {
  ++tally.calls;
  ++tally.callsOf[static_cast<std::size_t>(call.callee)];
  ++tally.errors[outcome.error];
  tally.opens += call.callee == Export::kOpenScanner && outcome.result == 1;
  const bool isBand = call.callee == Export::kAcquireImage && outcome.band[kBandStatus] == kGoOn &&
                      outcome.band[kBandLines] > 0;
  tally.bands += isBand;
  tally.pages += isBand && outcome.band[kBandDone] == 1;
}

// What a reader asks for first.
std::string Summary(const Record& settings) {
  std::string text = "  with";
  const auto tell = [&](const char* name, std::uint64_t value) {
    text += std::string(" ") + name + " " + std::to_string(value);
  };
  tell("level", settings[kCommandLevel]);
  tell("pixelType", settings[kPixelType]);
  tell("mirrorImage", settings[kMirrorImage]);
  tell("previewMode", settings[kPreviewMode]);
  tell("scanSource", settings[kScanSource]);
  tell("docFeedOption", settings[kDocFeedOption]);
  tell("areaWidthPx", settings[kAreaWidthPx]);
  tell("areaHeightPx", settings[kAreaHeightPx]);
  return text + "\n";
}

std::string Report(Family family, std::uint64_t seed, const std::string& call,
                   const std::string& difference, const Conversation& conversation,
                   const Replay& replay) {
  const char* const name = family == Family::kExtended ? "extended" : "standard";
  return std::string("family ") + name + ", seed " + std::to_string(seed) + ", " + call + "\n  " +
         difference + "\n" + Summary(conversation.Current()) + "  events before that:\n" +
         replay.LastEvents() + "  again: scripts/models 1 " + std::to_string(seed) + " " + name;
}

}  // namespace

std::string CompareConversation(Family family, std::uint64_t seed, Tally& tally) {
  ModuleRun module;
  Conversation conversation(family, seed, module.DeviceOfRecords());
  ModuleModel& model = conversation.Model();
  ++tally.conversations;
  for (std::size_t number = 0; !conversation.IsOver(); ++number) {
    const HostCall call = conversation.NextCall();
    module.SetRecords(model.records);
    const Outcome expected = model.Run(call);
    module.replay.Begin(model.wire.events);
    const Outcome actual = module.Run(call);

    std::string difference = module.replay.Verdict();
    if (difference.empty()) difference = Difference(expected, actual);
    if (difference.empty()) difference = Difference(model.records, module.Records());
    if (!difference.empty()) {
      const std::string where = "call " + std::to_string(number) + " " +
                                std::string(kExportNames[static_cast<std::size_t>(call.callee)]) +
                                "(" + std::to_string(call.argument) + ")";
      return Report(family, seed, where, difference, conversation, module.replay);
    }
    CountEvents(model.wire.events, tally);
    Count(call, expected, tally);
    conversation.Learn(call, expected);
  }
  return "";
}

std::string Tally::Report() const {
  const auto count = [](std::uint64_t number, const std::string& what) {
    return std::to_string(number) + " " + what;
  };
  std::string text = count(conversations, "conversations, ") + count(calls, "calls, ") +
                     count(transfers, "transfers, ") + count(faults, "of them faulty\n  ") +
                     count(opens, "scanners opened, ") + count(pages, "pages to the end, ") +
                     count(bands, "bands, ") + count(ejects, "ejects, ") +
                     count(cancels, "cancels, ") + count(focusRuns, "automatic focus\n  calls:");
  for (std::size_t i = 0; i < callsOf.size(); ++i) {
    text += " " + std::string(kExportNames[i]) + " " + std::to_string(callsOf[i]);
  }
  text += "\n  codes left:";
  for (const auto& [code, calls_] : errors) {
    text += " " + std::to_string(code) + " x " + std::to_string(calls_);
  }
  return text + "\n";
}

}  // namespace pmddb832::models
