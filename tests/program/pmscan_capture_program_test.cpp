#include <doctest/doctest.h>

#include "tests/program/pmscan_program.h"

namespace {

using pmscan::tests::ProgramResult;
using pmscan::tests::ProgramUnderTest;

const std::string kScan = "scan -o page.png --resolution 50 --area 10px,10px,40px,30px";

bool Has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

// What follows the texts of a PNG file, which tell the time.
std::string Pixels(const std::string& png) {
  const std::size_t data = png.find("IDAT");
  REQUIRE(data != std::string::npos);
  return png.substr(0, 33) + png.substr(data);
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: a capture with data replays to the same picture") {
  for (const std::string family : {"extended", "standard"}) {
    CAPTURE(family);
    const std::string device = " --overwrite --device sim:" + family;
    CHECK(Run(kScan + device + " --capture page.capture --capture-data").exitCode == 0);
    CHECK(Run("replay page.capture -o again.png --overwrite").exitCode == 0);
    CHECK(Pixels(Contents("again.png")) == Pixels(Contents("page.png")));
  }
}

TEST_CASE_FIXTURE(ProgramUnderTest,
                  "pmscan.exe: a capture without data replays without a picture") {
  CHECK(Run(kScan + " --capture page.capture").exitCode == 0);
  const ProgramResult result = Run("replay page.capture");
  CHECK(result.exitCode == 0);
  CHECK(Has(result.output, "Picture      not compared: the capture holds no image data"));
  CHECK(Has(result.output, "Differences  0\n"));
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: the capture of a failing scan ends with its end") {
  CHECK(Run(kScan + " --capture page.capture --device sim:extended+unplugged-at-byte=1000")
            .exitCode == 9);
  const std::string text = Contents("page.capture");
  CHECK(Has(text, " result 8007048F"));
  CHECK(Has(text, "return PMAcquireImage status=2"));
  CHECK(Has(text, "return PMCloseScanner"));
  CHECK(Run("replay page.capture").exitCode == 0);
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: a replay names the line that is not the same") {
  Write("reset.capture",
        "pmddb832 capture 1\nhost useDeviceInterface = 1\ncall PMOpenScanner\n"
        "write 2 : 1B 40\nreturn PMOpenScanner result=0\n");
  const ProgramResult result = Run("replay reset.capture");
  CHECK(result.exitCode == 77);
  CHECK(Has(result.errors,
            "reset.capture, line 4, in PMOpenScanner:\n"
            "  expected  write 2 : 1B 40\n"
            "  came      write 2 : 1B 49\n"));
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: a tolerant replay counts what is not the same") {
  CHECK(Run(kScan + " --capture page.capture").exitCode == 0);
  std::string text = Contents("page.capture");
  text.replace(text.find("host gamma = 100"), 16, "host gamma = 180");
  Write("page.capture", text);
  const ProgramResult result = Run("replay page.capture --tolerant");
  CHECK(result.exitCode == 77);
  CHECK(Has(result.output, "Differences  1\n"));
  CHECK(Has(result.errors, "There is one difference, shown above."));
}

// A capture in which the scanner does not deliver one of the blocks, from 0.
std::string BrokenPicture(const std::string& text, int number) {
  std::string broken = text;
  std::size_t block = broken.find(" last 00");
  for (int i = 0; i < number; ++i) block = broken.find(" last 00", block + 1);
  REQUIRE(block != std::string::npos);
  const std::size_t begin = broken.rfind("read ", block);
  const std::size_t end = broken.find('\n', block);
  return broken.replace(begin, end - begin, "read 5 got 0 result 80070079");
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: a tolerant replay writes the lines that came") {
  const std::string scan =
      "scan -o page.png --mode grey --resolution 600 --area 2in,2in,901px,1201px";
  CHECK(Run(scan + " --capture page.capture").exitCode == 0);
  Write("broken.capture", BrokenPicture(Contents("page.capture"), 9));
  const ProgramResult strict = Run("replay broken.capture -o part.png");
  CHECK(strict.exitCode == 77);
  CHECK(Has(strict.errors, "no picture was written"));
  CHECK(Contents("part.png").empty());
  const ProgramResult result =
      Run("replay broken.capture -o part.png --tolerant --json --capture new.capture");
  CHECK(result.exitCode == 77);
  CHECK(Has(result.output, "\"then\": {\n    \"call\": \"PMAcquireImage\""));
  CHECK(Has(result.output, "\"exitCode\": 77"));
  CHECK(Has(result.errors, "of 1201 lines that came."));
  CHECK(Contents("part.png").starts_with("\x89PNG"));
  CHECK(Run("replay new.capture").exitCode == 0);
}

TEST_CASE_FIXTURE(ProgramUnderTest,
                  "pmscan.exe: a replay without a line says why no picture came") {
  CHECK(Run(kScan + " --capture page.capture").exitCode == 0);
  Write("broken.capture", BrokenPicture(Contents("page.capture"), 0));
  const ProgramResult result = Run("replay broken.capture -o part.png --tolerant");
  CHECK(result.exitCode == 77);
  CHECK(Has(result.errors, "part.png was not written: not one line of the picture came."));
  CHECK(Contents("part.png").empty());
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: a captured scanner scans as the simulated one") {
  const std::string trace = kScan + " --capture page.capture --capture-data";
  CHECK(Run(trace).exitCode == 0);
  CHECK(Run("convert page.capture -o usb.pcapng").exitCode == 0);
  CHECK(Has(Run("import usb.pcapng").output, "usb.capture: "));
  const std::string page = Contents("page.png");
  for (const std::string file : {"page", "usb"}) {
    CAPTURE(file);
    CHECK(Run(kScan + " --overwrite --device capture:" + file + ".capture").exitCode == 0);
    CHECK(Pixels(Contents("page.png")) == Pixels(page));
  }
  const ProgramResult other = Run("info --device capture:page.capture --original page.png");
  CHECK(other.exitCode == 64);
  CHECK(Run("scan -o no.png --tolerant").exitCode == 65);
}

const std::string kRefusal =
    "pmscan: error 77: the module does not do what the capture tells\n"
    "  reset.capture, line 3:\n"
    "  expected  write 2 : 1B 40\n"
    "  came      write 2 : 1B 49\n"
    "  decoded   expected: ESC @ reset\n"
    "            came: ESC I level and identity\n"
    "  The captured scanner refused this transfer, and answers nothing behind it.\n"
    "  Compare the module with the one of the capture; --tolerant goes on and counts.\n";

TEST_CASE_FIXTURE(ProgramUnderTest,
                  "pmscan.exe: where a captured scanner refuses, that is all that is told") {
  Write("reset.capture", "pmddb832 capture 1\n\nwrite 2 : 1B 40\nread 1 : 06\n");
  const ProgramResult info = Run("info --device capture:reset.capture --json");
  CHECK(info.exitCode == 77);
  CHECK(info.errors == kRefusal);
  CHECK(Has(info.output, "\"code\": 77,"));
  CHECK_FALSE(Has(info.output, "lamp"));
  CHECK(Run(kScan + " --capture page.capture").exitCode == 0);
  const ProgramResult scan = Run(
      "scan -o no.png --resolution 75 --area 10px,10px,40px,30px --device capture:page.capture");
  CHECK(scan.exitCode == 77);
  CHECK(Has(scan.errors,
            "  The captured scanner refused this transfer, and answers nothing behind it. Nothing "
            "was saved.\n  Compare the module"));
  CHECK_FALSE(Has(scan.errors, "error 22"));
  CHECK_FALSE(Has(scan.errors, "80070079"));
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: a capture is not replaced without --overwrite") {
  Write("page.capture", "mine");
  const ProgramResult result = Run(kScan + " --capture page.capture");
  CHECK(result.exitCode == 74);
  CHECK(Has(result.errors, "page.capture is there already; --overwrite replaces it."));
  CHECK(Contents("page.capture") == "mine");
}

}  // namespace
