#include "tests/interface/open_conversation.h"

#include "tests/extended/extended_fixture.h"

namespace pmddb832::tests {

void ScriptProbe(ScriptedDevice& device, std::uint8_t status, std::string_view level) {
  device.Expect({0x1B, 0x49}).Reply({0x02, status, 0x07, 0x00});
  device.Reply(Text(level) + Bytes{0x52, 0x64, 0x00, 0x41, 0x00});
}

void ScriptExtendedOpen(ScriptedDevice& device) {
  ScriptProbe(device, kAnswersExtended);
  device.Expect({0x1B, 0x40}).Reply({0x06});
  device.Expect({0x1C, 0x49}).Reply(extended::Identity());
  device.Expect({0x1C, 0x46}).Reply(extended::Status());
}

void ScriptOpenWithRefusedReset(ScriptedDevice& device, std::uint8_t probeStatus) {
  ScriptProbe(device, probeStatus);
  device.Expect({0x1B, 0x40}).Reply({0x15});
}

}  // namespace pmddb832::tests
