#include "tests/program/pmscan_program.h"

#include <doctest/doctest.h>

namespace {

using pmscan::tests::ProgramResult;
using pmscan::tests::ProgramUnderTest;
using pmscan::tests::TiffHeights;
using Names = std::vector<std::string>;

// A feeder with three pages, coarse enough to be quick.
const std::string kFeeder =
    " --source feeder --mode grey --resolution 50 --device sim:extended:QM2500+pages=3";

bool Has(const std::string& text, const char* part) {
  return text.find(part) != std::string::npos;
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: a batch writes a file for each page") {
  const ProgramResult result = Run("scan --batch page%02d.png" + kFeeder);
  CHECK(result.exitCode == 0);
  CHECK(Files() == Names{"page01.png", "page02.png", "page03.png"});
  CHECK(Has(result.output, "Pages        3; the feeder is empty\n"));
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: a batch into a TIFF file makes a page of each") {
  CHECK(Run("scan --batch all.tif" + kFeeder).exitCode == 0);
  CHECK(TiffHeights(Contents("all.tif")) == std::vector<std::uint32_t>{700, 700, 700});
  CHECK(Files() == Names{"all.tif"});
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: no file is replaced without --overwrite") {
  Write("page2.png", "mine");
  const ProgramResult refused = Run("scan --batch page%d.png" + kFeeder);
  CHECK(refused.exitCode == 73);
  CHECK(Has(refused.errors, "page2.png is there already; --overwrite replaces it."));
  CHECK(Files() == Names{"page2.png"});
  CHECK(Contents("page2.png") == "mine");
  CHECK(Run("scan --overwrite --batch page%d.png" + kFeeder).exitCode == 0);
  CHECK(Contents("page2.png") != "mine");
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: a jam leaves the pages before it and names them") {
  // One page of 50 dots per inch has 297500 bytes.
  const ProgramResult result =
      Run("scan --batch page%d.bmp" + kFeeder + "+unplugged-at-byte=400000");
  CHECK(result.exitCode == 9);
  CHECK(Files() == Names{"page1.bmp"});
  CHECK(Has(result.output, "page1.bmp"));
  CHECK(Has(result.errors, "Saved before that: page1.bmp."));
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: a page that fails is not in a file of pages") {
  CHECK(Run("scan --batch all.tif" + kFeeder + "+unplugged-at-byte=400000").exitCode == 9);
  CHECK(TiffHeights(Contents("all.tif")) == std::vector<std::uint32_t>{700});
  CHECK(Files() == Names{"all.tif"});
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: nothing is left of a first page that fails") {
  CHECK(Run("scan --batch all.tif" + kFeeder + "+jam-at-line=100").exitCode == 15);
  CHECK(Files().empty());
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: an empty feeder is a failure when no page came") {
  const ProgramResult result =
      Run("scan -o a.png --source feeder --wait-for-paper=1 --device sim:extended:QM2500+pages=0");
  CHECK(result.exitCode == 13);
  CHECK(Has(result.errors, "waiting, 1 of at most 1 s"));
  CHECK(Files().empty());
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: pictures of every kind can lie on the bed") {
  for (const char* kind :
       {"a.bmp --mode lineart", "b.png --mode lineart", "c.tif --mode lineart", "d.bmp --mode grey",
        "e.png --mode grey", "f.tif --mode grey", "g.jpg --mode grey", "h.png --mode deep-colour",
        "i.bmp", "j.tif --mode deep-grey", "k.tif --mode deep-colour"}) {
    CAPTURE(kind);
    CHECK(Run(std::string("scan --resolution 50 -o ") + kind).exitCode == 0);
  }
  for (const std::string& file : Files()) {
    CAPTURE(file);
    const std::string files = " -o " + file + ".png --original " + file;
    CHECK(Run("scan --resolution 50" + files).exitCode == 0);
  }
}

// A BMP file of 7 by 5 colours, no two of them alike, at 100 dots per inch.
std::string SevenByFive() {
  std::string file(
      "BM\xAE\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\x07\0\0\0\x05\0\0\0\x01\0\x18\0\0\0\0\0"
      "\x78\0\0\0\x61\x0F\0\0\x61\x0F\0\0\0\0\0\0\0\0\0\0",
      54);
  for (int row = 0; row < 5; ++row) {
    for (int byte = 0; byte < 21; ++byte) file += static_cast<char>(7 * byte + 50 * row + 3);
    file += std::string(3, '\0');
  }
  return file;
}

TEST_CASE_FIXTURE(ProgramUnderTest,
                  "pmscan.exe: a scan of an original is the original, byte for byte") {
  const std::string original = SevenByFive();
  Write("original.bmp", original);
  for (const char* family : {"extended", "standard"}) {
    CAPTURE(family);
    const std::string how = std::string(" --overwrite --resolution 100 --area 0px,0px,7px,5px") +
                            " --device sim:" + family + " --original ";
    CHECK(Run("scan -o copy.bmp" + how + "original.bmp").exitCode == 0);
    CHECK(Contents("copy.bmp") == original);
    for (const std::string copy : {"copy.png", "copy.tif"}) {
      CAPTURE(copy);
      CHECK(Run("scan -o " + copy + how + "original.bmp").exitCode == 0);
      CHECK(Run("scan -o again.bmp" + how + copy).exitCode == 0);
      CHECK(Contents("again.bmp") == original);
    }
  }
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: a batch into a PDF file makes a page of each") {
  CHECK(Run("scan --batch all.pdf" + kFeeder).exitCode == 0);
  const std::string file = Contents("all.pdf");
  CHECK(file.starts_with("%PDF-1.5\n"));
  // 8.5 by 14 inches.
  std::size_t pages = 0;
  for (std::size_t at = 0; (at = file.find("/MediaBox [0 0 612.0000 1008.0000]", at)) != file.npos;
       ++at) {
    ++pages;
  }
  CHECK(pages == 3);
  CHECK(Has(file, "/Producer (pmscan 1."));
}

TEST_CASE_FIXTURE(ProgramUnderTest,
                  "pmscan.exe: standard output takes the bytes of a picture and nothing else") {
  const std::string kind = " --resolution 50 --area 1in,1in,50px,40px --mode grey --format bmp";
  CHECK(Run("scan -o page" + kind).exitCode == 0);
  const std::string page = Contents("page");
  const ProgramResult result = Run("scan -o -" + kind);
  CHECK(result.exitCode == 0);
  CHECK(page.starts_with("BM"));
  CHECK(result.outputBytes == page);
  CHECK(Has(result.errors, "Pixels       50 x 40\n"));
  CHECK(Files() == Names{"page"});
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: less quality makes smaller JPEG pictures") {
  CHECK(Run("scan -o low.jpg --resolution 50 --quality 10").exitCode == 0);
  CHECK(Run("scan -o usual.jpg --resolution 50").exitCode == 0);
  CHECK(Run("scan -o high.jpg --resolution 50 --quality 100").exitCode == 0);
  CHECK(2 * Contents("low.jpg").size() < Contents("usual.jpg").size());
  CHECK(Contents("usual.jpg").size() < Contents("high.jpg").size());
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: JSON stands alone on standard output") {
  const ProgramResult result = Run("scan --json --progress json --batch %d.png" + kFeeder);
  CHECK(result.exitCode == 0);
  CHECK(result.output.starts_with("{\n"));
  CHECK(Has(result.output, "\"end\": \"feeder empty\""));
  CHECK(result.output.ends_with("\"exitCode\": 0\n}\n"));
  CHECK(Has(result.errors, "{\"page\": 3, \"lines\": 700, \"height\": 700,"));
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: JSON also tells of a failure") {
  const ProgramResult result = Run("info --json --device sim:extended+unplugged-at-transfer=0");
  CHECK(result.exitCode == 1);
  CHECK(Has(result.output, "\"code\": 1,"));
  CHECK(Has(result.output, "\"exitCode\": 1\n"));
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: what came of a page that failed can be kept") {
  const std::string jam =
      " --mode grey --resolution 300 --source feeder --device sim:extended:QM2500+jam-at-line=2000";
  CHECK(Run("scan -o a.tif" + jam).exitCode == 15);
  CHECK(Files().empty());
  const ProgramResult result = Run("scan -o a.tif --keep-partial" + jam);
  CHECK(result.exitCode == 15);
  const std::vector<std::uint32_t> heights = TiffHeights(Contents("a.tif"));
  // Line 2000 lies in block 83, and each one before it brought 24 lines.
  CHECK(heights == std::vector<std::uint32_t>{1992});
  CHECK(Has(result.output, "1992 of 4200 lines"));
  CHECK(Has(result.errors, "Saved before that: a.tif."));
}

TEST_CASE_FIXTURE(ProgramUnderTest,
                  "pmscan.exe: a transfer that failed is named, and how to see what was said") {
  const ProgramResult result = Run("info --device sim:extended+unplugged-at-transfer=3");
  CHECK(result.exitCode != 0);
  CHECK(Has(result.errors, "On the cable transfer 3, a "));
  CHECK(Has(result.errors, " failed with 0x"));
  CHECK(Has(result.errors, "add --capture FILE, then: pmscan decode FILE."));
  const ProgramResult captured =
      Run("info --device sim:extended+unplugged-at-transfer=3 --capture info.capture");
  CHECK(Has(captured.errors, "To see what was said: pmscan decode info.capture"));
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: what goes on is told before the page is there") {
  const ProgramResult result = Run("scan -o a.png --progress bar --original none.png");
  CHECK(result.exitCode == 66);
  CHECK(result.errors.starts_with("Preparing the scan\n"));
  CHECK(result.errors.size() > 100);
  CHECK(Run("scan -o a.png --original none.png").errors.starts_with("pmscan: error 66"));
}

TEST_CASE_FIXTURE(ProgramUnderTest,
                  "pmscan.exe: a folder that is missing stops the scan before it") {
  const ProgramResult result = Run("scan -o none/a.png --capture a.capture");
  CHECK(result.exitCode == 73);
  CHECK(Has(result.errors, "there is no folder none."));
  CHECK(Run("scan -o . --format png").exitCode == 73);
  CHECK(Files().empty());
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: the system's errors come with words") {
  const ProgramResult result = Run("info --dll none.dll");
  CHECK(result.exitCode == 69);
  CHECK(Has(result.errors, "none.dll did not load: "));
  CHECK(Has(result.errors, pmscan::tests::kNoLibraryWords));
}

TEST_CASE_FIXTURE(ProgramUnderTest,
                  "pmscan.exe: a fault that never strikes is a failure at the end") {
  Write("late.json", R"({"faults": [{"at": {"command": "FS G", "occurrence": 2}, "do": "fail"}]})");
  const ProgramResult result = Run("scan -o a.png --resolution 50 --faults late.json");
  CHECK(result.exitCode == 79);
  CHECK(Has(result.errors, "Note: this fault did not strike: late.json:1\n"));
  CHECK(Has(result.errors, "error 79: a fault of the script did not strike"));
  CHECK(Files() == Names{"a.png", "late.json"});
  CHECK(Has(Run("scan -o a.png --overwrite --resolution 50 --faults late.json --json").output,
            "\"code\": 79"));
  Write("odd.json", R"({"faults": [{"at": {"command": "FS X"}, "do": "fail"}]})");
  CHECK(Run("scan -o b.png --faults odd.json").exitCode == 70);
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: models are found in any case") {
  const ProgramResult result = Run("info --device sim:Extended:qm2500");
  CHECK(result.exitCode == 0);
  CHECK(Has(result.output, "Model        QM2500 (SCANNER QM-2500)"));
  const ProgramResult odd = Run("info --device sim:extended:QM250");
  CHECK(odd.exitCode == 64);
  CHECK(Has(odd.errors, "did you mean \"extended:QM2500\"? pmscan devices lists the scanners."));
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: a dry run ends where the scan would start") {
  for (const char* family : {"extended", "standard"}) {
    const ProgramResult result = Run(std::string("scan --dry-run -o a.png --device sim:") + family);
    CAPTURE(result.output);
    CHECK(result.exitCode == 0);
    CHECK(result.output.starts_with("1B 49  ESC I level and identity\n"));
    CHECK(Has(result.output, "main resolution     300 dpi\n"));
    CHECK(Has(result.output, "\n1"));
    CHECK(Has(result.output.substr(result.output.size() - 30), " G start "));
  }
  CHECK(Files().empty());
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: a dry run needs a scanner that is simulated") {
  CHECK(Run("scan --dry-run --device sti:any").exitCode == 65);
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: names of files are UTF-8") {
  const std::string name =
      "Gr\xC3\xBC\xC3\x9F"
      "e-\xE2\x98\x83.png";
  const ProgramResult result = Run("scan --resolution 50 -o " + name);
  CHECK(result.exitCode == 0);
  CHECK(Has(result.output, ("File         " + name + ", PNG, ").c_str()));
  CHECK(Files() == Names{name});
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: lines end as the system has it") {
  const ProgramResult result = Run("info");
  CHECK(result.outputBytes.starts_with(std::string("Model        SCANNER QM-2700") +
                                       pmscan::tests::kLineEnd));
}

TEST_CASE_FIXTURE(ProgramUnderTest,
                  "pmscan.exe: the list of devices begins with the simulated ones") {
  const ProgramResult result = Run("devices");
  CHECK(result.exitCode == 0);
  CHECK(result.output.starts_with("Simulated scanners\n  sim:extended\n"));
  CHECK(Has(result.output, "\nStill-image devices of this system\n"));
}

}  // namespace
