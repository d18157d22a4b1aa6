#include "tests/safety/calls_within_calls.h"

#include <doctest/doctest.h>

#include <array>
#include <set>
#include <string_view>
#include <vector>

#include "tests/pmscan/documented_codes.h"

namespace pmddb832::tests {
namespace {

using Host = InterruptedHost;

constexpr std::uint32_t kTransferFailed = 9;

// In the order of Place.
constexpr std::array<std::string_view, 4> kPlaceNames{"a read", "a write", "the progress routine",
                                                      "a repaint"};

enum Effect {
  kSilent,     // the call under way ends as it would have, or fails with code 9
  kConverses,  // takes part in the conversation under way, or puts another command set in the
               // place of its: the call under way may end with any documented code
};

struct Interruption {
  std::string_view name;
  Effect effect;
  void (*make)(Host& host);
  // What the next call behind the interrupted one must show; null for nothing.
  void (*checkNext)(Host& host) = nullptr;
};

void CheckNothingIsSent(Host& host) {
  const std::size_t before = host.Moments().size();
  CHECK(host->GetOptionStatus(2) == 0);
  CHECK(host.Moments().size() == before);
}

void CheckOtherScannerIsAsked(Host& host) {
  const std::size_t before = host.OtherTransfers();
  host->GetOptionStatus(2);
  CHECK(host.OtherTransfers() > before);
}

void CheckNoBandComes(Host& host) {
  CHECK(host.Acquire().failed);
}

void AskPaperSize(Host& host) {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  host->GetScanPaperSize(0, &width, &height);
}

constexpr std::array kInterruptions{
    Interruption{"PMOpenScanner", kConverses, [](Host& host) { host.Open(host.settings); }},
    Interruption{"PMOpenScanner of another record", kConverses,
                 [](Host& host) { host.Open(host.otherSettings); }, CheckOtherScannerIsAsked},
    Interruption{"PMSetScannerHardware to another record", kSilent,
                 [](Host& host) { host->SetScannerHardware(&host.otherSettings); },
                 CheckOtherScannerIsAsked},
    Interruption{"PMSetScannerHardware to null", kSilent,
                 [](Host& host) { host->SetScannerHardware(nullptr); }, CheckNothingIsSent},
    Interruption{"null, then the old record", kSilent,
                 [](Host& host) {
                   host->SetScannerHardware(nullptr);
                   host->SetScannerHardware(&host.settings);
                 }},
    Interruption{"PMInitAcquire", kSilent, [](Host& host) { host.SetUp(1); }},
    Interruption{"PMAcquireImage", kConverses, [](Host& host) { host.Acquire(); }},
    Interruption{"PMAbortScan", kConverses, [](Host& host) { host->AbortScan(); }},
    Interruption{"abort, then set-up", kConverses,
                 [](Host& host) {
                   host->AbortScan();
                   host.SetUp(1);
                 }},
    Interruption{"PMCloseScanner", kSilent, [](Host& host) { host->CloseScanner(); },
                 CheckNoBandComes},
    Interruption{"close, then open again", kConverses,
                 [](Host& host) {
                   host->CloseScanner();
                   host.Open(host.settings);
                 }},
    Interruption{"PMGetOptionStatus", kConverses, [](Host& host) { host->GetOptionStatus(0); }},
    Interruption{"PMEject", kConverses, [](Host& host) { host->Eject(nullptr); }},
    Interruption{"PMFeed", kConverses, [](Host& host) { host->Feed(nullptr); }},
    Interruption{"PMReset", kConverses, [](Host& host) { host->Reset(); }},
    Interruption{"PMSetFocus", kConverses, [](Host& host) { host->SetFocus(0, 100); }},
    Interruption{"PMEnableOption", kConverses, [](Host& host) { host->EnableOption(1); }},
    Interruption{"PMGetScanPaperSize", kConverses, AskPaperSize},
    Interruption{"PMGetScanError", kSilent, [](Host& host) { host->GetScanError(); }}};

// A session that nothing interrupts.
struct SoundSession {
  explicit SoundSession(const InterruptedSubject& subject) {
    Host host(subject.name, subject.source);
    for (const SessionStep& step : WholeSession()) {
      results.push_back(host.Run(step));
      steps.resize(host.Moments().size(), results.size() - 1);
    }
    places = host.Moments();
    scan = host.ScanAfresh();
  }

  std::vector<StepResult> results;  // of each step
  std::vector<StepResult> scan;     // of the scan behind it
  std::vector<Place> places;        // at each moment
  std::vector<std::size_t> steps;
};

void CheckUnhurt(const StepResult& result, const StepResult& sound) {
  if (result == sound) return;
  CHECK(result.failed);
  CHECK(result.error == kTransferFailed);
}

// The session with an interruption at one moment, and a scan afresh behind it.
void CheckSession(const InterruptedSubject& subject, const SoundSession& sound, std::size_t moment,
                  const Interruption& interruption) {
  const std::size_t interrupted = sound.steps[moment];
  INFO(interruption.name << " from " << kPlaceNames[static_cast<std::size_t>(sound.places[moment])]
                         << " within " << WholeSession()[interrupted].name << ", moment "
                         << moment);
  Host host(subject.name, subject.source);
  host.InterruptAt(moment, [&] { interruption.make(host); });
  for (std::size_t i = 0; i < sound.results.size(); ++i) {
    const StepResult result = host.Run(WholeSession()[i]);
    CHECK(IsDocumented(result.error));
    if (i != interrupted) continue;
    if (interruption.effect == kSilent) CheckUnhurt(result, sound.results[i]);
    // A first open that failed leaves nothing that could show it.
    const bool hasScanner = i > 0 || !result.failed;
    if (hasScanner && interruption.checkNext != nullptr) interruption.checkNext(host);
  }
  CHECK(host.ScanAfresh() == sound.scan);
}

}  // namespace

void CheckCallsWithin(std::initializer_list<InterruptedSubject> subjects) {
  for (const InterruptedSubject& subject : subjects) {
    CAPTURE(std::string(subject.name));
    const SoundSession sound(subject);
    std::set<Place> reached;
    for (std::size_t moment = 0; moment < sound.places.size(); ++moment) {
      if (WholeSession()[sound.steps[moment]].repeats) continue;
      reached.insert(sound.places[moment]);
      for (const Interruption& interruption : kInterruptions) {
        CheckSession(subject, sound, moment, interruption);
      }
    }
    CHECK(reached.size() == kPlaceNames.size());
  }
}

}  // namespace pmddb832::tests
