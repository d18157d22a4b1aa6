#include <doctest/doctest.h>

#include "tests/capture/decode_text.h"

namespace {

using namespace pmddb832::tests;

// `count` blocks of two lines behind the start of a transfer.
SampleConversation Blocks(std::uint8_t count) {
  Bytes parameters = SampleParameters();
  parameters[20] = static_cast<std::uint8_t>(2 * count);
  parameters[28] = 2;
  SampleConversation sample;
  sample.Call("PMAcquireImage").Command({0x1C, 'W'}, parameters).Write({0x1C, 'G'});
  const auto full = static_cast<std::uint8_t>(count - 1);
  sample.Read({0x02, 0, 200, 0, 0, 0, full, 0, 0, 0, 200, 0, 0, 0});
  for (std::uint8_t i = 0; i < full; ++i) sample.ReadImage(201, 0).Write({0x06});
  return sample;
}

TEST_CASE("blocks that are alike are told once, with how many follow") {
  SampleConversation sample = Blocks(12);
  sample.ReadImage(201, 0).Return();
  const std::string told = Told(sample);
  CHECK(told.find("     block 1 of 12, 2 lines, 200 bytes, status ok, ACK\n"
                  "     ... 10 more like it (blocks 2 to 11)\n"
                  "     block 12 of 12, 2 lines, 200 bytes, status ok\n") != std::string::npos);
}

TEST_CASE("two that are alike are both told") {
  SampleConversation sample = Blocks(3);
  sample.ReadImage(201, 0).Return();
  CHECK(Told(sample).find("more like it") == std::string::npos);
}

TEST_CASE("calls that are alike are told once, with their blocks and their end") {
  SampleConversation sample = Blocks(9);
  sample.capture.entries.resize(7);  // up to the reply to the start
  sample.ReadImage(201, 0).Write({0x06}).Return();
  for (int i = 0; i < 4; ++i) {
    sample.Call("PMAcquireImage").ReadImage(201, 0).Write({0x06}).Return({{"status", 1}});
  }
  CHECK(
      Told(sample).ends_with("     block 2 of 9, 2 lines, 200 bytes, status ok, ACK\n"
                             "     returned status go on (1)\n"
                             "   ... 3 more like it (blocks 3 to 5), until 0.039 s\n"));
}

TEST_CASE("a group of calls that is repeated is told once, marked where it tells of trouble") {
  SampleConversation sample;
  for (int i = 0; i < 5; ++i) {
    sample.Call("PMReset").Command({0x1B, '@'}).Return({{"result", 1}});
    sample.Call("PMGetScanError").Return({{"result", 43}});
  }
  CHECK(Told(sample).ends_with("\n!! ... 4 more like it (2 calls each), until 0.029 s\n"));
}

TEST_CASE("trouble in the middle of a picture is not folded away") {
  SampleConversation sample = Blocks(12);
  sample.ReadImage(201, 0x80).Return();
  const std::string told = Told(sample);
  CHECK(HasLine(told, "     ... 10 more like it (blocks 2 to 11)"));
  CHECK(HasLine(told, "!!   block 12 of 12, 2 lines, 200 bytes, status error (0x80)"));
}

TEST_CASE("a long reply that says the same again is not repeated") {
  SampleConversation sample;
  sample.Write({0x1C, 'I'}).Read(SampleIdentity()).Write({0x1C, 'I'}).Read(SampleIdentity());
  CHECK(HasLine(Told(sample), "     FS I identity             80 bytes, the same as before"));
}

TEST_CASE("a long line goes on below behind a comma") {
  SampleConversation sample;
  sample.HostSets(316, Repeated(256, 0)).HostSets(572, Repeated(256, 0));
  sample.HostSets(828, Repeated(256, 0)).HostSets(1340, Repeated(9, 0)).Call("PMFeed").Return();
  CHECK(Told(sample).find(
            "     settings by the host: gammaTableB 256 bytes, gammaTableG 256 bytes, gammaTableR "
            "256 bytes,\n         colorMatrix 9 bytes\n") != std::string::npos);
}

}  // namespace
