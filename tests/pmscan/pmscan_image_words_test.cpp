#include <doctest/doctest.h>

#include <iterator>
#include <nlohmann/json.hpp>
#include <sstream>

#include "pmscan/command_line/command_line.h"
#include "pmscan/command_line/file_name.h"
#include "tests/pmscan/refusal.h"
#include "tests/pmscan/test_folder.h"

// The options that say how the scanner makes the picture, on the command line.

namespace {

using pmscan::Command;
using pmscan::ImageSettings;
using pmscan::Options;

Options Parse(const std::string& words) {
  std::istringstream stream(words);
  return pmscan::ParseCommandLine({std::istream_iterator<std::string>(stream), {}});
}

ImageSettings ImageOf(const std::string& words) {
  return Parse("scan -o a.png " + words).image;
}

std::string RefusalOf(const std::string& words) {
  return pmscan::tests::RefusalOf([&] { Parse("scan -o a.png " + words); });
}

// A folder with a table that counts up, its three colours, and a matrix.
struct NumberFiles : pmscan::tests::TestFolder {
  NumberFiles() : TestFolder("pmscan_numbers") {
    std::string one = "# a table\n";
    std::string three;
    for (int place = 0; place < 256; ++place) one += std::to_string(place) + ", ";
    for (int place = 0; place < 768; ++place) three += std::to_string(place / 256 * 100) + "\n";
    Write("one.txt", one);
    Write("three.txt", three);
    Write("matrix.txt", "32 0 0 # red\n0 -4 0\n0 0 127\n");
  }
  std::string Name(const std::string& file) const { return (path / file).generic_string(); }
};

TEST_CASE("pmscan: a scan has no image settings of its own unless told") {
  const ImageSettings image = ImageOf("");
  CHECK(image.threshold == 0);
  CHECK(image.halftone == 0);
  CHECK(image.brightness == 0);
  CHECK(image.sharpness == 0);
  CHECK(image.gamma == 100);
  CHECK_FALSE(image.gammaTables);
  CHECK_FALSE(image.colorMatrix);
  CHECK(image.channel == 0);
  CHECK(image.zoom == 100);
  CHECK_FALSE(image.isPreview);
  CHECK_FALSE(image.keepsPaper);
  CHECK_FALSE(Parse("scan -o a.png").focus);
}

TEST_CASE("pmscan: every image setting of a scan arrives") {
  CHECK(ImageOf("--mode lineart --threshold 97").threshold == 97);
  CHECK(ImageOf("--brightness -3").brightness == -3);
  CHECK(ImageOf("--brightness=2").brightness == 2);
  CHECK(ImageOf("--sharpness -2").sharpness == -2);
  CHECK(ImageOf("--gamma 2.2").gamma == 220);
  CHECK(ImageOf("--gamma 3").gamma == 300);
  CHECK(ImageOf("--mode grey --channel green").channel == 2);
  CHECK(ImageOf("--zoom 150").zoom == 150);
  CHECK(ImageOf("--source feeder --keep-paper").keepsPaper);
}

TEST_CASE("pmscan: a halftone has a name or a number") {
  CHECK(ImageOf("--mode lineart --halftone large-dots").halftone == 5);
  CHECK(ImageOf("--mode lineart --halftone 5").halftone == 5);
  CHECK(ImageOf("--mode lineart --halftone 9").halftone == 9);
  CHECK(ImageOf("--mode lineart --halftone none").halftone == 0);
  CHECK(RefusalOf("--mode lineart --halftone 10").starts_with("64 There is no halftone \"10\"; "));
}

TEST_CASE("pmscan: a focus is automatic or a position, of a scan or by itself") {
  CHECK(Parse("scan -o a.png --focus auto").focus->isAutomatic);
  CHECK(Parse("scan -o a.png --focus -64").focus->position == -64);
  CHECK(Parse("focus").focus->isAutomatic);
  CHECK_FALSE(Parse("focus --focus 155").focus->isAutomatic);
  CHECK(Parse("focus --focus 155").focus->position == 155);
  for (const char* wrong : {"-65", "156", "near", "3x"}) {
    CHECK(RefusalOf(std::string("--focus ") + wrong) ==
          "64 There is no focus \"" + std::string(wrong) +
              "\"; --focus can be auto or a position from -64 to 155.");
  }
}

TEST_CASE("pmscan: a misspelt setting is answered with the one that was meant") {
  CHECK(RefusalOf("--mode lineart --halftone dotz") ==
        "64 There is no halftone \"dotz\"; did you mean \"dots\"? --halftone can be: none, fine, "
        "medium, coarse, dots, large-dots, lines, diagonals, mixed.");
  CHECK(RefusalOf("--gamma 1.8") ==
        "64 There is no gamma \"1.8\"; did you mean \"1.0\"? --gamma can be: 1.0, 2.2, 2.5, 2.8, "
        "3.0.");
  CHECK(RefusalOf("--mode grey --channel gren") ==
        "64 There is no channel \"gren\"; did you mean \"green\"? --channel can be: red, green, "
        "blue.");
  CHECK(RefusalOf("--sharpnes 1") ==
        "64 There is no \"--sharpnes\"; did you mean \"--sharpness\"?");
}

TEST_CASE("pmscan: a number out of its range is a usage error") {
  for (const char* words :
       {"--mode lineart --threshold 0", "--mode lineart --threshold 256", "--brightness 4",
        "--brightness -4", "--sharpness 3", "--sharpness -3", "--zoom 49", "--zoom 201"}) {
    CAPTURE(words);
    CHECK(RefusalOf(words).starts_with("64 "));
  }
}

TEST_CASE_FIXTURE(NumberFiles, "pmscan: a gamma table is one for all channels, or three") {
  const ImageSettings one = ImageOf("--gamma-table " + Name("one.txt"));
  CHECK(one.gammaTables->red[77] == 77);
  CHECK(one.gammaTables->AreAlike());
  const ImageSettings three = ImageOf("--gamma-table " + Name("three.txt"));
  CHECK(three.gammaTables->red[255] == 0);
  CHECK(three.gammaTables->green[0] == 100);
  CHECK(three.gammaTables->blue[255] == 200);
  CHECK_FALSE(three.gammaTables->AreAlike());
}

TEST_CASE_FIXTURE(NumberFiles, "pmscan: a colour matrix is nine numbers with their signs") {
  CHECK(ImageOf("--color-matrix " + Name("matrix.txt")).colorMatrix ==
        pmscan::ColorMatrix{32, 0, 0, 0, 0xFC, 0, 0, 0, 127});
}

TEST_CASE_FIXTURE(NumberFiles,
                  "pmscan: a file of numbers that cannot be used is told with its place") {
  Write("word.txt", "1 2\n3 four\n");
  Write("large.txt", "256");
  CHECK(RefusalOf("--gamma-table " + Name("none.txt")) ==
        "71 " + Name("none.txt") + " cannot be opened.");
  CHECK(RefusalOf("--gamma-table " + Name("word.txt")) ==
        "71 " + Name("word.txt") + ":2: expected a whole number from 0 to 255, got \"four\".");
  CHECK(RefusalOf("--gamma-table " + Name("large.txt")) ==
        "71 " + Name("large.txt") + ":1: expected a whole number from 0 to 255, got \"256\".");
  CHECK(RefusalOf("--gamma-table " + Name("matrix.txt")).starts_with("71 "));
  CHECK(RefusalOf("--color-matrix " + Name("one.txt")) ==
        "71 " + Name("one.txt") + ":2: expected a whole number from -128 to 127, got \"128\".");
  Write("eight.txt", "1 2 3 4 5 6 7 8");
  CHECK(RefusalOf("--color-matrix " + Name("eight.txt")) ==
        "71 " + Name("eight.txt") + ": expected nine numbers, got 8 numbers.");
  CHECK(RefusalOf("--gamma-table " + Name("eight.txt")) ==
        "71 " + Name("eight.txt") +
            ": expected a table of 256 numbers, or three for red, green and blue, got 8 numbers.");
}

TEST_CASE_FIXTURE(NumberFiles,
                  "pmscan: settings that exclude each other are not left out silently") {
  const std::string table = "--gamma-table " + Name("one.txt");
  const std::string matrix = "--color-matrix " + Name("matrix.txt");
  for (const std::string& words :
       {std::string("--threshold 9"), std::string("--mode grey --halftone dots"),
        std::string("--mode lineart --halftone dots --threshold 9"), std::string("--channel red"),
        std::string("--mode palette --channel red"),
        std::string("--mode deep-colour --channel red"), std::string("--mode deep-grey --preview"),
        std::string("--mode deep-colour --preview"),
        std::string("--mode colour --preview --resolution 100"), std::string("--keep-paper"),
        table + " --gamma 2.2", table + " --brightness 1", matrix + " --mode grey --channel red"}) {
    CAPTURE(words);
    CHECK(RefusalOf(words).starts_with("65 "));
  }
}

TEST_CASE("pmscan: a preview is as coarse as the scanner can, grey as it was asked for") {
  CHECK(Parse("scan -o a.png --preview").dotsPerInch == 0);
  CHECK(Parse("scan -o a.png --preview --mode grey --resolution 75").dotsPerInch == 75);
  CHECK(ImageOf("--preview").isPreview);
}

TEST_CASE("pmscan: an area can be a paper size, in any case, at the top left") {
  const pmscan::AreaRequest a4 = *Parse("scan -o a.png --area A4").area;
  CHECK(a4.left.amount == 0);
  CHECK(a4.top.amount == 0);
  CHECK(a4.width.amount == 210);
  CHECK(a4.height.amount == 297);
  CHECK(a4.height.unit == pmscan::LengthUnit::kMillimetre);
  CHECK(Parse("scan -o a.png --area letter").area->width.amount == 8.5);
  CHECK(RefusalOf("--area leter") ==
        "64 There is no area \"leter\"; did you mean \"letter\"? --area can be "
        "LEFT,TOP,WIDTH,HEIGHT, or: a3, a4, a5, a6, b4, b5, letter, legal, ledger, executive, "
        "statement.");
}

TEST_CASE("pmscan: the feeder, the focus and the reset are subcommands") {
  CHECK(Parse("feed --device sim:x").command == Command::kFeed);
  CHECK(Parse("eject --json").isJson);
  CHECK(Parse("reset --capture r.capture --capture-data").capture.keepsImageData);
  CHECK(pmscan::tests::CodeOf([] { Parse("feed --mode grey"); }) == pmscan::kUsage);
}

TEST_CASE_FIXTURE(NumberFiles, "pmscan: a profile keeps the image settings, by their type") {
  const std::string matrix = Name("matrix.txt");
  const Options kept = pmscan::ParseCommandLine(
      {"scan", "--save-profile", "p", "--brightness", "-2", "--zoom", "150", "--preview",
       "--color-matrix", matrix, "--gamma", "2.2", "--focus", "7", "--area", "a5"},
      path);
  pmscan::SaveProfile(path, kept.savedProfile, kept.keptOptions, false);
  CHECK(Text("p.json") ==
        "{\n  \"area\": \"a5\",\n  \"brightness\": -2,\n  \"gamma\": \"2.2\",\n"
        "  \"color-matrix\": " +
            nlohmann::json(pmscan::Utf8(pmscan::PathOf(matrix).make_preferred())).dump() +
            ",\n  \"zoom\": 150,\n  \"preview\": true,\n"
            "  \"focus\": \"7\"\n}\n");
  const Options options =
      pmscan::ParseCommandLine({"scan", "-o", "a.png", "--profile", "p", "--zoom", "80"}, path);
  CHECK(options.image.brightness == -2);
  CHECK(options.image.zoom == 80);
  CHECK(options.image.colorMatrix->at(4) == 0xFC);
  CHECK(options.focus->position == 7);
}

}  // namespace
