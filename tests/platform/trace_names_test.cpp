#include <doctest/doctest.h>

#include <functional>
#include <string>

#include "imaging/pixel_conversion.h"
#include "imaging/units.h"
#include "platform/trace.h"
#include "tests/interface/module_fixture.h"
#include "tests/interface/recording_command_set.h"

// The names under which the routines of transport and imaging are known to the host's log.

namespace pmddb832::tests {
namespace {

struct NamesFixture : ModuleFixture {
  NamesFixture() {
    system.logAvailable = true;
    MakeChannel();
  }

  // The name of the outermost scope of a call.
  std::string NameOf(const std::function<void()>& call) {
    system.logLines.clear();
    call();
    if (system.logLines.size() < 2) return "not traced";
    std::string name = system.logLines.front().text;
    name.resize(name.rfind(", entering"));
    return system.logLines.back().text == name + ", leaving" ? name : "not left";
  }

  RecordingCommandSet set;
};

struct Name {
  std::string name;
  std::function<void()> call;
};

}  // namespace

TEST_CASE_FIXTURE(NamesFixture, "names of the device channel") {
  DeviceDriver channel;
  std::uint8_t byte = 0;
  device.Unplug();
  const Name names[] = {
      {"Sddnt::Open", [&] { channel.Open(); }},
      {"Sddnt::Close", [&] { channel.Close(settings); }},
      {"Sddnt::IsReady", [&] { channel.IsReady(settings); }},
      {"Sddnt::Read", [&] { channel.Read(settings, &byte, 1); }},
      {"Sddnt::Write", [&] { channel.Write(settings, &byte, 1); }},
      {"Sddnt::GetScanServerSupportFunction", [&] { channel.GetScanServerSupportFunction(); }},
      {"Sddnt::GetOpsys", [&] { channel.GetOpsys(); }},
  };
  for (const Name& entry : names) CHECK(NameOf(entry.call) == entry.name);
}

TEST_CASE_FIXTURE(NamesFixture, "an open channel that is destroyed closes inside its own scope") {
  NameOf([] { DeviceDriver().Open(); });
  REQUIRE(system.logLines.size() == 8);
  CHECK(system.logLines[0].text == "Sddnt::DeviceDriver, entering");
  CHECK(system.logLines[4].text == "Sddnt::~DeviceDriver, entering");
  CHECK(system.logLines[5].text == "Sddnt::Close, entering");
  CHECK(system.logLines[7].text == "Sddnt::~DeviceDriver, leaving");
}

TEST_CASE_FIXTURE(NamesFixture, "names of the transport") {
  LocalType wire;
  Bytes bytes(1);
  device.Unplug();
  const Name names[] = {
      {"Sgeneral::LocalType::SendAck", [&] { wire.SendAck(CallNow(), 0x06); }},
      {"Sgeneral::LocalType::CheckAck", [&] { wire.CheckAck(CallNow()); }},
      {"Sgeneral::LocalType::SendEscCode", [&] { wire.SendEscCode(CallNow(), 'I'); }},
      {"Sgeneral::LocalType::SendFSCode", [&] { wire.SendFSCode(CallNow(), 'I'); }},
      {"Sgeneral::LocalType::Read", [&] { wire.Read(CallNow(), bytes); }},
      {"Sgeneral::LocalType::Write", [&] { wire.Write(CallNow(), bytes); }},
      {"Sgeneral::LocalType::FeedPaper", [&] { wire.FeedPaper(CallNow()); }},
      {"Sgeneral::LocalType::EjectPage", [&] { wire.EjectPage(CallNow()); }},
  };
  for (const Name& entry : names) CHECK(NameOf(entry.call) == entry.name);
}

TEST_CASE_FIXTURE(NamesFixture, "names of the commands that all sets share") {
  device.Unplug();
  const Name names[] = {
      {"Sgeneral::GeneralCmd::SendEscCode", [&] { set.SendEscCode(CallNow(), 'I'); }},
      {"Sgeneral::GeneralCmd::SendAck", [&] { set.SendAck(CallNow(), 0x06); }},
      {"Sgeneral::GeneralCmd::CheckAck", [&] { set.CheckAck(CallNow()); }},
      {"Sgeneral::GeneralCmd::FeedPaper", [&] { set.FeedPaper(CallNow()); }},
      {"Sgeneral::GeneralCmd::EjectPage", [&] { set.EjectPage(CallNow()); }},
      {"Sgeneral::GeneralCmd::ResetScanner", [&] { set.ResetScanner(CallNow()); }},
      {"Sgeneral::GeneralCmd::SetGamma", [&] { set.SetGamma(100); }},
      {"Sgeneral::GeneralCmd::GetHalfTones", [&] { set.GetHalfTones(settings); }},
      {"Sgeneral::GeneralCmd::InitWorkArea", [&] { set.InitWorkArea(); }},
  };
  for (const Name& entry : names) CHECK(NameOf(entry.call) == entry.name);
}

TEST_CASE_FIXTURE(NamesFixture, "a reset is traced like the sending of its letter") {
  device.Expect({0x1B, 0x40}).Reply({0x06});
  NameOf([&] { set.ResetScanner(CallNow()); });
  REQUIRE(system.logLines.size() > 2);
  CHECK(system.logLines[1].text == "Sgeneral::GeneralCmd::SendEscCode, entering");
}

TEST_CASE_FIXTURE(NamesFixture, "names of the image routines") {
  using namespace Scanutil;
  const ScanLine line;
  const HostRow row;
  const Name names[] = {
      {"Scanutil::InchesToPixelsORWIA", [] { InchesToPixelsORWIA(1, 1); }},
      {"Scanutil::PixelsToInchesORWIA", [] { PixelsToInchesORWIA(1, 1); }},
      {"Scanutil::CalcResolution", [] { CalcResolution(1, 1); }},
      {"Scanutil::Pix2Mono", [&] { Pix2Mono(line, row, 0, false, false); }},
      {"Scanutil::Pix256MonoFinal", [&] { Pix256MonoFinal(line, row, 0, false, false); }},
      {"Scanutil::Pix256MonoPreview", [&] { Pix256MonoPreview(line, row, 0, false); }},
      {"Scanutil::Pix256Color", [&] { Pix256Color(line, row, false, 0, false); }},
      {"Scanutil::PixTrueColor", [&] { PixTrueColor(line, row, false, 0, false); }},
      {"Scanutil::Pix4096Color", [&] { Pix4096Color(line, row, 0, false); }},
      {"Scanutil::PixSuperColor", [&] { PixSuperColor(line, row, false, 0, false, false); }},
      {"Scanutil::Pix4096Mono", [&] { Pix4096Mono(line, row, 0, false, false); }},
  };
  for (const Name& entry : names) CHECK(NameOf(entry.call) == entry.name);
}

}  // namespace pmddb832::tests
