#include <doctest/doctest.h>

#include <nlohmann/json.hpp>

#include "tests/program/pmscan_program.h"

// Settings of a scan, and what pmscan does besides scans, as a whole program.

namespace {

using Json = nlohmann::json;
using pmscan::tests::ProgramResult;
using pmscan::tests::ProgramUnderTest;

bool Has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: a bed of level B3 is scanned, and replayed") {
  const std::string scan = "scan -o a.png --resolution 75 --device sim:extended:HK300";
  CHECK(Run(scan).exitCode == 65);
  const ProgramResult result = Run(scan + " --area A5 --capture a.capture");
  CHECK(result.exitCode == 0);
  CHECK(Has(result.output, "B3, extended commands"));
  CHECK(Has(result.output, "437 x 620"));
  CHECK(Run("replay a.capture").exitCode == 0);
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: the feeder is fed and emptied") {
  for (const char* device : {"sim:extended:QM2500", "sim:standard:PS3100"}) {
    const std::string with = std::string(" --device ") + device;
    CHECK(Run("feed" + with).output == "The feeder was told to draw in a page.\n");
    CHECK(Run("eject" + with).output == "The feeder was told to throw out its page.\n");
    CHECK(Run("feed" + with + "+pages=0").exitCode == 13);
    CHECK(Run("reset" + with).exitCode == 0);
  }
  CHECK(Run("feed").exitCode == 65);
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: focus goes to a position where it can") {
  CHECK(Run("focus --focus -7").output == "The scanner focuses at -7.\n");
  CHECK(Has(Run("focus --focus 9 --json").output, "\"focus\": 9"));
  CHECK(Run("focus --focus 9 --device sim:standard:RV3000").exitCode == 65);
  const ProgramResult refused = Run("focus --device sim:standard:PS936XL");
  CHECK(refused.exitCode == 65);
  CHECK(Has(refused.errors, "this one has level A5: name one that can with --device."));
  CHECK(!Has(refused.errors, "--focus"));
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: what is done besides scans tells its scanner") {
  const std::string of =
      "{\n  \"model\": \"QM2500\",\n  \"product\": \"SCANNER QM-2500\",\n"
      "  \"level\": \"B7\",\n  \"commands\": \"extended\",\n";
  for (const char* command : {"feed", "eject", "reset"}) {
    CAPTURE(command);
    const std::string run = std::string(command) + " --json --device sim:extended:QM2500";
    CHECK(Run(run).output == of + "  \"exitCode\": 0\n}\n");
  }
  CHECK(Run("feed --json --device sim:extended:QM2500+pages=0")
            .output.starts_with(of + "  \"error\": {"));
  CHECK(Has(Run("focus --focus 9 --json").output,
            "\"level\": \"B8\",\n  \"commands\": \"extended\",\n  \"focus\": 9,"));
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: settings of a scan reach the scanner") {
  const ProgramResult result = Run(
      "scan --dry-run --mode lineart --halftone lines --brightness -2 --gamma 2.8 --sharpness 1 "
      "--zoom 50 --device sim:standard --focus 3");
  CHECK(result.exitCode == 0);
  for (const char* sent :
       {"ESC p focus position\n  43\n", "ESC B halftone\n  A0\n", "ESC L brightness\n  FE\n",
        "ESC Z gamma code\n  10\n", "ESC Q sharpness\n  01\n", "ESC H zoom\n  32 32\n"}) {
    CAPTURE(sent);
    CHECK(Has(result.output, sent));
  }
}

// The data of the identity with a bed of 0 x 0.
const std::string kNoBed =
    R"({"faults": [{"at": {"command": "ESC I", "part": "data", "occurrence": "every"}, "do": {)"
    R"("answer": "42 38 52 32 00 52 48 00 52 4B 00 52 64 00 52 96 00 52 C8 00 52 2C 01 52 90 01)"
    R"( 52 58 02 52 B0 04 52 80 0C 41 00 00 00 00"}}]})";

TEST_CASE_FIXTURE(ProgramUnderTest,
                  "pmscan.exe: a scanner with standard commands that tells no bed takes an area") {
  Write("nobed.json", kNoBed);
  const std::string scan = "scan --device sim:standard --resolution 150 --mode grey";
  const ProgramResult refused = Run(scan + " -o none.bmp --faults nobed.json");
  CHECK(refused.exitCode == 65);
  CHECK(Has(refused.errors, "did not tell the size of its flatbed: say what to scan with --area"));
  for (const char* area : {"a6", "1.1in,2in,333px,77px"}) {
    CAPTURE(area);
    const std::string wanted = scan + " --overwrite --area " + area;
    CHECK(Run(wanted + " -o told.bmp").exitCode == 0);
    CHECK(Run(wanted + " -o untold.bmp --faults nobed.json").exitCode == 0);
    CHECK(Contents("untold.bmp") == Contents("told.bmp"));
  }
}

TEST_CASE_FIXTURE(ProgramUnderTest,
                  "pmscan.exe: a dry run leaves automatic focus out, and says so") {
  for (const char* family : {"extended", "standard"}) {
    const std::string run = std::string("scan --dry-run --focus auto --device sim:") + family;
    const ProgramResult result = Run(run);
    CAPTURE(result.output);
    CHECK(result.exitCode == 0);
    CHECK(result.errors.starts_with("Note: automatic focus, which takes 20 seconds, is left out"));
    CHECK(!Has(result.output, "ESC p"));
    CHECK(Has(result.output, " G start "));
  }
  CHECK(Run("scan --dry-run --focus auto --device sim:standard:RV3000").exitCode == 65);
}

// The bed is 637 pixels wide, the feeder 637 as well.
TEST_CASE_FIXTURE(
    ProgramUnderTest,
    "pmscan.exe: columns at the right edge that cannot be had are told of every scan") {
  const std::string note =
      "Note: the scanner delivers whole groups of eight pixels; the picture ends 5 pixels before "
      "the right edge.\n";
  const std::string scan = "scan --overwrite -o a.bmp --resolution 75 --device sim:";
  CHECK(Run(scan + "standard:QM2700").errors == note);
  CHECK(Run(scan + "standard:QM2700 --area 0px,0px,637px,10px").errors == note);
  CHECK(Run(scan + "standard:QM2500 --source feeder").errors == note);
  CHECK(Run(scan + "extended:QM2700 --mode lineart").errors == note);
  CHECK(Run(scan + "standard:QM2700 --area 0px,0px,633px,10px").errors ==
        "Note: the scanner delivers whole groups of eight pixels; the picture ends 1 pixel before "
        "the right edge.\n");
  CHECK(Run(scan + "standard:QM2700 --area 0px,0px,632px,10px").errors.empty());
  CHECK(Run(scan + "extended:QM2700").errors.empty());
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: the list of devices tells what info tells") {
  const Json simulated = Json::parse(Run("devices --json").output)["simulated"];
  CHECK(simulated.size() == 50);
  for (const Json& listed : simulated) {
    const std::string device = listed["device"];
    const std::string product = listed["product"];
    CAPTURE(device);
    if (product.empty()) continue;
    const Json info = Json::parse(Run("info --json --device " + device).output);
    CHECK(info["product"] == product);
    CHECK(listed["highestResolution"] == info["highestResolution"]);
    CHECK(info["sources"][1]["fitted"] == (listed["unit"] == "feeder"));
    CHECK(info["sources"][2]["fitted"] == (listed["unit"] == "film unit"));
  }
}

TEST_CASE_FIXTURE(ProgramUnderTest,
                  "pmscan.exe: a misspelt scanner is answered with the one meant") {
  CHECK(Run("info --device SIM:Extended:qm2700").exitCode == 0);
  Write("bureau_scanner.json", "{}");
  const ProgramResult refused = Run("info --device sim:burau_scanner.json");
  CHECK(refused.exitCode == 70);
  CHECK(
      Has(refused.errors,
          "  burau_scanner.json: there is no such file; did you mean \"bureau_scanner.json\"?\n"));
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: profiles lie where the system keeps settings") {
  pmscan::tests::SetVariable(pmscan::tests::kSettingsVariable, (Folder() / "settings").string());
  CHECK(Run("scan --mode grey --save-profile letters").exitCode == 0);
  CHECK(Contents("settings/pmscan/letters.json") == "{\n  \"mode\": \"grey\"\n}\n");
  CHECK(Run("profiles").output == "letters\n");
}

TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: a profile that is kept is reported as JSON") {
  const std::string keep = "scan --mode grey --save-profile letters --json";
  pmscan::tests::SetVariable(pmscan::tests::kSettingsVariable, (Folder() / "settings").string());
  const Json kept = Json::parse(Run(keep).output);
  CHECK(kept.size() == 3);
  CHECK(kept["profile"] == "letters");
  CHECK(std::filesystem::equivalent(std::filesystem::path(kept["file"].get<std::string>()),
                                    Folder() / "settings/pmscan/letters.json"));
  CHECK(kept["exitCode"] == 0);
  const Json refused = Json::parse(Run(keep).output);
  CHECK(refused["error"]["code"] == 78);
  CHECK(refused["error"]["detail"] ==
        "There is a profile \"letters\" already; --overwrite replaces it.");
  CHECK(refused["exitCode"] == 78);
}

TEST_CASE_FIXTURE(ProgramUnderTest,
                  "pmscan.exe: nothing is left behind a picture for standard output") {
  using pmscan::tests::kTemporaryVariable;
  const std::string usual = std::filesystem::temp_directory_path().string();
  pmscan::tests::SetVariable(kTemporaryVariable, Folder().string());
  CHECK(Run("scan -o - --resolution 50").exitCode == 0);
  const std::string jam = " --source feeder --device sim:extended:QM2500+jam-at-line=100";
  CHECK(Run("scan -o - --resolution 50" + jam).exitCode == 15);
  CHECK(Files().empty());
  pmscan::tests::SetVariable(kTemporaryVariable, (Folder() / "none").string());
  const ProgramResult refused = Run("scan -o - --capture a.capture");
  CHECK(refused.exitCode == 73);
  CHECK(Has(refused.errors, "There can be no temporary file in "));
  CHECK(Has(refused.errors, std::string(kTemporaryVariable) + " names another folder."));
  CHECK(Files().empty());
  pmscan::tests::SetVariable(kTemporaryVariable, usual);
}

#ifndef _WIN32
TEST_CASE_FIXTURE(ProgramUnderTest, "pmscan.exe: a picture goes to what its link leads to") {
  std::filesystem::create_directories(Folder() / "far");
  Write("far/old.bmp", "old");
  std::filesystem::create_symlink("far/old.bmp", Folder() / "near.bmp");
  const std::string scan = "scan -o near.bmp --mode grey --area 0in,0in,13px,7px";
  CHECK(Run(scan).exitCode == 73);
  CHECK(Contents("far/old.bmp") == "old");
  CHECK(Run(scan + " --overwrite").exitCode == 0);
  CHECK(std::filesystem::is_symlink(Folder() / "near.bmp"));
  CHECK(Contents("far/old.bmp").starts_with("BM"));
}
#endif

}  // namespace
