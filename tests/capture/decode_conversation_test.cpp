#include <doctest/doctest.h>

#include "tests/capture/decode_text.h"

namespace {

using namespace pmddb832::tests;

TEST_CASE("an extended conversation is told as an engineer would tell it") {
  CHECK(Told(ExtendedSample()) ==
        R"(   2 calls of the host; trouble in 2, marked with !!

   0.001 s  PMOpenScanner
     ESC @ reset               ACK
     FS I identity             80 bytes
         command level                 "B8"
         basic resolution              600 dpi
         minimum resolution, halved    25 dpi
         maximum resolution, doubled   2400 dpi
         flatbed width                 5100 pixels
         flatbed height                7020 pixels
         feeder width                  5100 pixels
         feeder height                 8400 pixels
         transparency unit width       0 pixels
         transparency unit height      0 pixels
         feeder capabilities           feeder variant, second capability (0x30)
         product name                  "SCANNER QM-5500"
!!   FS F status               main status warming up (0x02), feeder installed (0x80), transparency unit clear
     returned open (1)

   0.009 s  PMAcquireImage, bufferBytes 4000
     ESC m colour matrix       ACK, 64 -2 0 0 64 0 0 0 64, ACK
     FS W set parameters       ACK, 64 bytes, ACK
         main resolution               300 dpi
         sub resolution                300 dpi
         area left                     8 pixels
         area top                      24 lines
         area width                    100 pixels
         area height                   40 lines
         colour mode                   channel 1 (0x10)
         bits per sample               8
         option unit                   on (1)
         parameter g                   0
         lines per block               16
         gamma code                    gamma 2.2 (2)
         brightness                    -2
         colour correction             off (0)
         halftone code                 0x80
         mode override                 0x6E
         enhancement                   2
         sharpness                     1
         mirror                        on (1)
         option parameter              0x42
     FS G start transfer       status clear, full block 1600 bytes, full blocks 2, last block 800 bytes
     block 1 of 3, 16 lines, 1600 bytes, status ok, ACK
     block 2 of 3, 16 lines, 1600 bytes, status ok, ACK
!!   block 3 of 3, 8 lines, 800 bytes, status error (0x80)
!!   returned status failed (2)
)");
}

TEST_CASE("a standard conversation is told as an engineer would tell it") {
  CHECK(Told(StandardSample()) ==
        R"(   2 calls of the host; trouble in 2, marked with !!

   0.001 s  PMOpenScanner
     ESC I level and identity  17 bytes
         header status                 clear
         command level                 "B8"
         resolutions                   50, 300 dpi
         largest area                  5100 x 7020 pixels
!!   ESC f status              15 bytes
         header status                 clear
         main status                   feeder variant (0x20)
!!       feeder                        installed, error, empty (0xC8)
         feeder width                  5100 pixels
         feeder height                 8400 pixels
         transparency unit             clear
         transparency unit width       0 pixels
         transparency unit height      0 pixels
     returned open (1)

   0.009 s  PMAcquireImage, bufferBytes 4000
     ESC C colour mode         ACK, colour (0x13), ACK
     ESC L brightness          ACK, -2, ACK
     ESC A scan area           ACK, left 8 pixels, top 24 lines, width 100 pixels, height 40 lines, ACK
     ESC d lines per block     ACK, 16, ACK
     ESC G start scan          status clear, line 100 bytes, lines 16
     block 1 of 3, 16 lines, 1600 bytes, status ok, ACK
     block 2 of 3, 16 lines, 1600 bytes, status ok, ACK
     block 3 of 3, 8 lines, 800 bytes, status ok, last block (0x20)
!!   FF eject the page         NAK
!!   returned status failed (2)
)");
}

TEST_CASE("the host's settings and a call's outcome are told by their names") {
  SampleConversation sample;
  sample.HostSets(186, {0x2C, 0x01}).HostSets(228, {0x44, 0xFD, 0xFF, 0xFF});
  sample.HostSets(572, Repeated(256, 1)).Call("PMGetOptionStatus", {{"option", 0}});
  sample.Return({{"result", 13}});
  const std::string told = Told(sample);
  CHECK(HasLine(told, "   0.001 s  PMGetOptionStatus, option document feeder (0)"));
  CHECK(HasLine(told,
                "     settings by the host: resolution 300, brightness -700, gammaTableG 256 "
                "bytes"));
  CHECK(told.ends_with("!!   returned feeder empty (13)\n"));
}

TEST_CASE("a call in which nothing happened is one line") {
  SampleConversation sample;
  sample.Call("PMGetScanError").Return({{"result", 43}});
  CHECK(Told(sample).ends_with("!! 0.001 s  PMGetScanError -> warming up (43)\n"));
}

TEST_CASE("a call that never returned is told") {
  SampleConversation sample;
  sample.Call("PMReset").Write({0x1B, '@'});
  CHECK(Told(sample).ends_with("!!   the capture ends here, before the call returned\n"));
}

TEST_CASE("a conversation in which all went well says so") {
  SampleConversation sample;
  sample.Call("PMReset").Command({0x1B, '@'}).Return({{"result", 1}});
  CHECK(Told(sample).starts_with("   1 call of the host, nothing went wrong\n"));
}

}  // namespace
