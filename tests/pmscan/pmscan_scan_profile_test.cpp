#include <doctest/doctest.h>

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

#include "pmscan/command_line/command_line.h"
#include "pmscan/command_line/named_files.h"
#include "pmscan/command_line/profiles_command.h"
#include "pmscan/scan/scan_profile.h"
#include "tests/pmscan/refusal.h"
#include "tests/pmscan/test_folder.h"

namespace {

using pmscan::KeptOption;
using pmscan::Options;
using Arguments = std::vector<std::string>;

// The user's folder of profiles, which does not exist at first.
struct Profiles : pmscan::tests::TestFolder {
  Profiles() : TestFolder("pmscan_profiles") {}

  void Write(const std::string& name, const std::string& text) const {
    TestFolder::Write("pmscan/" + name + ".json", text);
  }
  std::string Text(const std::string& name) const {
    return TestFolder::Text("pmscan/" + name + ".json");
  }
  Options Parse(const Arguments& arguments) const {
    return pmscan::ParseCommandLine(arguments, folder);
  }
  void Save(const Arguments& arguments) const {
    const Options options = Parse(arguments);
    pmscan::SaveProfile(folder, options.savedProfile, options.keptOptions, options.mayOverwrite);
  }
  std::string RefusalOf(const Arguments& arguments) const {
    return pmscan::tests::RefusalOf([&] { Parse(arguments); });
  }

  const std::filesystem::path folder = path / "pmscan";
};

TEST_CASE_FIXTURE(Profiles, "pmscan: a profile keeps the options that were given, by their type") {
  Save({"scan", "--save-profile", "letters", "--mode", "lineart", "--resolution", "200", "--mirror",
        "--wait-for-paper", "--source", "feeder"});
  CHECK(Text("letters") ==
        "{\n"
        "  \"wait-for-paper\": 60,\n"
        "  \"mode\": \"lineart\",\n"
        "  \"resolution\": 200,\n"
        "  \"source\": \"feeder\",\n"
        "  \"mirror\": true\n"
        "}\n");
}

TEST_CASE_FIXTURE(Profiles, "pmscan: the files of a scan are not kept") {
  Save({"scan", "-o", "a.png", "--overwrite", "--save-profile", "empty"});
  CHECK(Text("empty") == "{}\n");
}

TEST_CASE_FIXTURE(Profiles, "pmscan: a profile keeps how pictures are written, and how many") {
  Save({"scan", "--save-profile", "letters", "--format", "pdf", "--quality", "60", "--pages", "3",
        "--source", "feeder"});
  CHECK(Text("letters") ==
        "{\n"
        "  \"format\": \"pdf\",\n"
        "  \"quality\": 60,\n"
        "  \"pages\": 3,\n"
        "  \"source\": \"feeder\"\n"
        "}\n");
  const Options options = Parse({"scan", "--batch", "a.scan", "--profile", "letters"});
  CHECK(options.format.name == "PDF");
  CHECK(options.quality == 60);
  CHECK(options.pages == 3);
  CHECK(Parse({"scan", "--batch", "a.pdf", "--profile", "letters", "--pages", "2"}).pages == 2);
  CHECK(RefusalOf({"scan", "--save-profile", "wrong", "--format", "gif"}).starts_with("64 "));
}

TEST_CASE_FIXTURE(Profiles, "pmscan: a profile names its files from anywhere") {
  const pmscan::tests::WorkingFolder inside(path);
  std::string numbers;
  for (int i = 0; i < 256; ++i) numbers += "7 ";
  TestFolder::Write("table.txt", numbers);
  TestFolder::Write("desk.json", "{}");
  Save({"scan", "--gamma-table", "table.txt", "--original", "./bed.png", "--device",
        "sim:desk.json", "--save-profile", "near"});
  const std::string kept = Text("near");
  CAPTURE(kept);
  const auto has = [&](const std::string& value) {
    return kept.find(nlohmann::json(value).dump()) != std::string::npos;
  };
  const auto whole = [](const char* name) {
    return std::filesystem::absolute(name).lexically_normal().string();
  };
  CHECK(has(whole("table.txt")));
  CHECK(has(whole("bed.png")));
  CHECK(has("sim:" + whole("desk.json")));
  Save({"scan", "--device", "sim:brought.json", "--save-profile", "brought"});
  CHECK(Text("brought") == "{\n  \"device\": \"sim:brought.json\"\n}\n");
  Save({"scan", "--device", "capture:a.capture", "--save-profile", "captured"});
  CHECK(Text("captured").find(nlohmann::json("capture:" + whole("a.capture")).dump()) !=
        std::string::npos);
}

TEST_CASE_FIXTURE(Profiles, "pmscan: what fails in a file of a profile is told with the profile") {
  Write("table", R"({"gamma-table": "no.txt", "original": "no.png"})");
  const std::string file = pmscan::ProfileFile(folder, "table");
  CHECK(RefusalOf({"scan", "-o", "a.bmp", "--profile", "table"}) ==
        "71 " + file + ": no.txt cannot be opened.");
  CHECK(RefusalOf({"scan", "-o", "a.bmp", "--profile", "table", "--gamma-table", "not.txt"}) ==
        "71 not.txt cannot be opened.");
  Write("table", R"({"original": "no.png", "device": "capture:no.capture"})");
  const Options options = Parse({"scan", "-o", "a.bmp", "--profile", "table"});
  const auto told = [&](const char* detail) {
    return std::string(pmscan::WithProfile(pmscan::Failure(66, detail), options).what());
  };
  CHECK(told("no.png: cannot open it") == file + ": no.png: cannot open it");
  CHECK(told("no.capture does not open") == file + ": no.capture does not open");
  CHECK(told("other.png: cannot open it") == "other.png: cannot open it");
}

TEST_CASE_FIXTURE(Profiles, "pmscan: what a profile keeps is what the scan gets") {
  Write("letters", R"({"mode": "lineart", "resolution": 200, "mirror": true, "area":
    "0in,0in,1in,2in", "source": "feeder", "wait-for-paper": 5, "device": "sim:standard"})");
  const Options options = Parse({"scan", "-o", "a.png", "--profile", "letters"});
  CHECK(options.mode.name == "lineart");
  CHECK(options.dotsPerInch == 200);
  CHECK(options.isMirrored);
  CHECK(options.area->height.amount == 2);
  CHECK(options.source.name == "feeder");
  CHECK(options.paperSeconds == 5);
  CHECK(options.device == "sim:standard");
}

TEST_CASE_FIXTURE(Profiles, "pmscan: options beside a profile win over it") {
  Write("letters", R"({"mode": "lineart", "resolution": 200, "mirror": true})");
  const Options options =
      Parse({"scan", "-o", "a.png", "--profile", "letters", "--mode", "grey", "--mirror=false"});
  CHECK(options.mode.name == "grey");
  CHECK(options.dotsPerInch == 200);
  CHECK(!options.isMirrored);
}

TEST_CASE_FIXTURE(Profiles, "pmscan: a profile can be kept under another name, with changes") {
  Write("letters", R"({"mode": "lineart", "resolution": 200})");
  Save({"scan", "--profile", "letters", "--mode", "grey", "--save-profile", "photos"});
  CHECK(Text("photos") == "{\n  \"mode\": \"grey\",\n  \"resolution\": 200\n}\n");
}

TEST_CASE_FIXTURE(Profiles, "pmscan: a profile is replaced only when that is allowed") {
  Write("letters", "{}");
  CHECK(pmscan::tests::RefusalOf([&] {
          Save({"scan", "--save-profile", "letters"});
        }) == "78 There is a profile \"letters\" already; --overwrite replaces it.");
  CHECK_NOTHROW(Save({"scan", "--save-profile", "letters", "--overwrite"}));
}

TEST_CASE_FIXTURE(Profiles, "pmscan: a profile that cannot be written is told with the reason") {
  TestFolder::Write("file", "");
  const auto refusal = [&](const std::filesystem::path& where) {
    return pmscan::tests::RefusalOf([&] { pmscan::SaveProfile(where, "letters", {}, false); });
  };
  const std::filesystem::path inFile = path / "file" / "pmscan";
  CHECK(refusal(inFile).starts_with("78 " + inFile.string() + ": cannot make the folder: "));
#ifndef _WIN32
  CHECK(refusal(inFile).ends_with(": Not a directory."));
  const pmscan::tests::NarrowDisk disk(1);
  CHECK(refusal(folder) == "78 " + Name("pmscan/letters.json") + ": cannot write: File too large.");
  CHECK_FALSE(std::filesystem::exists(folder / "letters.json"));
#endif
}

TEST_CASE_FIXTURE(Profiles, "pmscan: an unknown profile is answered with those that there are") {
  CHECK(RefusalOf({"scan", "-o", "a.png", "--profile", "x"}) ==
        "64 There is no profile \"x\"; there is none yet: --save-profile makes one.");
  Write("photos", "{}");
  Write("letters", "{}");
  CHECK(RefusalOf({"scan", "-o", "a.png", "--profile", "x"}) ==
        "64 There is no profile \"x\"; there are: letters, photos.");
  CHECK(RefusalOf({"scan", "-o", "a.png", "--profile", "leters"}) ==
        "64 There is no profile \"leters\"; did you mean \"letters\"? There are: letters, photos.");
}

TEST_CASE_FIXTURE(Profiles, "pmscan: of more than a dozen profiles only one is suggested") {
  for (char letter = 'a'; letter <= 'm'; ++letter) Write(std::string("scan-") + letter, "{}");
  CHECK(RefusalOf({"scan", "-o", "a.png", "--profile", "skan-b"}) ==
        "64 There is no profile \"skan-b\"; did you mean \"scan-b\"?");
  CHECK(RefusalOf({"scan", "-o", "a.png", "--profile", "x"}) ==
        "64 There is no profile \"x\"; pmscan profiles lists those that there are.");
}

TEST_CASE_FIXTURE(Profiles, "pmscan: a misspelt key of a profile is answered with the one meant") {
  Write("odd", R"({"haltone": "dots"})");
  const std::string start = "78 " + (folder / "odd.json").string() + ": a profile has no ";
  CHECK(RefusalOf({"scan", "-o", "a.png", "--profile", "odd"}) ==
        start + "\"haltone\"; did you mean \"halftone\"?");
  Write("odd", R"({"1234567": "dots"})");
  CHECK(RefusalOf({"scan", "-o", "a.png", "--profile", "odd"}) ==
        start + "\"1234567\"; it has options of pmscan scan --help.");
}

TEST_CASE_FIXTURE(Profiles, "pmscan: a file that is no profile is refused with the reason") {
  Write("list", "[1]");
  Write("cut", "{\"mode\": ");
  Write("key", R"({"output": "a.png"})");
  Write("type", R"({"resolution": "high"})");
  Write("sign", R"({"resolution": -1})");
  Write("endless", R"({"resolution": 3e3333})");
  for (const std::string name : {"list", "cut", "key", "type", "sign", "endless"}) {
    const std::string refusal = RefusalOf({"scan", "-o", "a.png", "--profile", name});
    CAPTURE(refusal);
    CHECK(refusal.starts_with("78 "));
    CHECK(refusal.find(std::string(name) + ".json: ") != std::string::npos);
  }
}

TEST_CASE_FIXTURE(Profiles, "pmscan: a profile's value that its option does not take is refused") {
  Write("red", R"({"mode": "red"})");
  Write("low", R"({"resolution": 0})");
  Write("wide", R"({"area": "1in,1in,2"})");
  for (const char* name : {"red", "low", "wide"}) {
    const std::string refusal = RefusalOf({"scan", "-o", "a.png", "--profile", name});
    CAPTURE(refusal);
    CHECK(refusal.starts_with("78 "));
    CHECK(refusal.find(std::string(name) + ".json: ") != std::string::npos);
  }
  CHECK(RefusalOf({"scan", "-o", "a.png", "--profile", "red"}).find("no mode \"red\"") !=
        std::string::npos);
}

TEST_CASE_FIXTURE(Profiles, "pmscan: a profile's name stays in its folder") {
  for (const std::string name : {"../a", "a/b", "a\\b", "c:a", ".hidden", "", "a*"}) {
    CAPTURE(name);
    CHECK_THROWS_AS(pmscan::SaveProfile(folder, name, {}, true), pmscan::Failure);
    CHECK_THROWS_AS(pmscan::LoadProfile(folder, name), pmscan::Failure);
  }
}

// What pmscan profiles prints with the arguments.
std::string Printed(const std::filesystem::path& folder, const std::vector<std::string>& words) {
  std::vector<std::string> arguments{"profiles"};
  arguments.insert(arguments.end(), words.begin(), words.end());
  std::ostringstream output;
  pmscan::RunProfilesCommand(pmscan::ParseCommandLine(arguments), folder, output);
  return output.str();
}

TEST_CASE_FIXTURE(Profiles, "pmscan: the saved profiles are listed, shown and removed") {
  CHECK(Printed(folder, {}) == "There is none yet: pmscan scan --save-profile NAME makes one.\n");
  Write("photos", "{}");
  Write("letters", R"({"mode": "lineart", "resolution": 200, "mirror": true})");
  CHECK(Printed(folder, {}) == "letters\nphotos\n");
  CHECK(Printed(folder, {"letters"}) == "--mode=lineart\n--resolution=200\n--mirror=true\n");
  CHECK(Printed(folder, {"letters", "--remove"}) == "The profile \"letters\" is removed.\n");
  CHECK(Printed(folder, {}) == "photos\n");
  CHECK(pmscan::tests::RefusalOf([&] {
          Printed(folder, {"letters", "--remove"});
        }) == "64 There is no profile \"letters\"; there are: photos.");
  CHECK(pmscan::tests::RefusalOf([&] { Printed(folder, {"--remove"}); }).starts_with("64 "));
}

}  // namespace
