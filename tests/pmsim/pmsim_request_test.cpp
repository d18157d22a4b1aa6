#include <doctest/doctest.h>

#include "tests/pmscan/test_folder.h"
#include "tests/pmsim/served.h"

// Which requests are met, and what is said of the others.

using namespace pmsim_test;

namespace {

struct Folder : pmscan::tests::TestFolder {
  Folder() : TestFolder("pmsim_request") {
    Write("calls.capture", "pmddb832 capture 1\ncall PMReset\nreturn PMReset\n");
    Write("other.capture", "hello\n");
    Write("reset.capture", "pmddb832 capture 1\nwrite 2 : 1B 40\nread 1 : 06\n");
  }
};

// Why there is no device; empty when there is one.
std::string Refusal(const pmsim::DeviceRequest& request) {
  try {
    const Host host(request);
  } catch (const pmsim::RequestError& error) {
    return error.what();
  }
  return {};
}

}  // namespace

TEST_CASE("pmsim: a device has one of two beginnings") {
  CHECK(Refusal({.device = "sti:Desk"}) ==
        "there is no device \"sti:Desk\": expected a simulated scanner, as in sim:extended or "
        "sim:FILE.json, or a captured one, as in capture:FILE");
  CHECK(Refusal({.device = ""}).starts_with("there is no device \"\": expected"));
}

TEST_CASE("pmsim: a scanner's name that does not exist is answered with the nearest one") {
  CHECK(Refusal({.device = "sim:extnded"}) ==
        "sim:extnded: no scanner is named \"extnded\"; did you mean \"extended\"?");
  CHECK(Refusal({.device = "sim:"}) ==
        "sim:: no scanner is named \"\"; a name is \"extended\" or \"standard\", or one of them "
        "with a model behind it, as in \"extended:QM2700\"");
  CHECK(Refusal({.device = "sim:extended+warm-up=3"}).empty());
}

TEST_CASE(
    "pmsim: a scanner file is found in the folder of the system's, and refused with its line") {
  CHECK(Refusal({.device = "sim:desk_flatbed.json"}).empty());
  const Folder folder;
  folder.Write("bad.json", "{\n  \"base\": \"extended\",\n  \"pages\": 3\n}\n");
  const std::string refusal = Refusal({.device = "sim:" + folder.Name("bad.json")});
  CHECK(refusal.find("bad.json:3: pages: expected a list") != std::string::npos);
  CHECK(Refusal({.device = "sim:no_such.json"}).starts_with("no_such.json: "));
}

TEST_CASE("pmsim: a fault script is read, and refused with its line") {
  const Folder folder;
  folder.Write("bad.json", "{\"faults\": [\n{\"at\": {\"transfer\": 1}, \"do\": \"explode\"}]}");
  const std::string refusal =
      Refusal({.device = "sim:standard", .faultScript = folder.Name("bad.json")});
  CHECK(refusal.find("bad.json:2: faults[0].do: expected") != std::string::npos);
}

TEST_CASE("pmsim: a capture needs transfers") {
  const Folder folder;
  CHECK(Refusal({.device = "capture:" + folder.Name("reset.capture")}).empty());
  CHECK(Refusal({.device = "capture:" + folder.Name("calls.capture")}) ==
        folder.Name("calls.capture") + ": expected transfers, there are none");
  CHECK(Refusal({.device = "capture:" + folder.Name("other.capture")})
            .starts_with(folder.Name("other.capture") + ", line 1: expected"));
  CHECK(Refusal({.device = "capture:no/such"}) ==
        "no/such does not open for reading: expected a capture");
}

TEST_CASE("pmsim: what the device cannot heed is refused") {
  const Folder folder;
  const std::string captured = "capture:" + folder.Name("reset.capture");
  CHECK(Refusal({.device = captured, .faultScript = "f.json"}) ==
        captured +
            " is captured, and faults are for simulated scanners: expected sim:NAME, or none of "
            "it");
  CHECK(Refusal({.device = captured, .original = "o.png"}) ==
        captured +
            " is captured, and an original is for simulated scanners: expected sim:NAME, or none "
            "of it");
  CHECK(Refusal({.device = "sim:extended", .isTolerant = true}) ==
        "sim:extended is simulated, and tolerance is for captured scanners: expected "
        "capture:FILE, or none of it");
}

TEST_CASE("pmsim: a recording replaces a file only when it may") {
  const Folder folder;
  const std::string file = folder.Name("reset.capture");
  CHECK(Refusal({.device = "sim:extended", .recording = file}) ==
        file + " is there already: expected a new file, or to be told that it may be replaced");
  CHECK(folder.Text("reset.capture").size() == 47);
  CHECK(Refusal({.device = "sim:extended", .recording = file, .mayOverwrite = true}).empty());
  CHECK(folder.Text("reset.capture") == "pmddb832 capture 1\n# sim:extended\n\n");
}

TEST_CASE("pmsim: a recording that does not open is told with the reason") {
  const Folder folder;
  const std::string file = folder.Name("no/such/x.capture");
  CHECK(Refusal({.device = "sim:extended", .recording = file}) ==
        file + " does not open for the capture: No such file or directory");
}
