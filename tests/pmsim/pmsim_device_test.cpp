#include <doctest/doctest.h>

#include "tests/pmscan/test_folder.h"
#include "tests/pmsim/served.h"

// What the devices answer, record and complain of.

using namespace pmsim_test;

namespace {

constexpr auto kTimeout = static_cast<std::int32_t>(0x80070079);

const Bytes kReset{0x1B, 0x40};
const Bytes kIdentity{0x1C, 0x49};
const Bytes kStatus{0x1C, 0x46};

struct Folder : pmscan::tests::TestFolder {
  Folder() : TestFolder("pmsim_device") {
    Write("told.capture",
          "pmddb832 capture 1\n"
          "call PMOpenScanner\nwrite 2 : 1B 40\nread 1 : 06\nreturn PMOpenScanner\n"
          "write 2 : 1C 46\nread 4 : 11 22 33 44\n"
          "write 2 : 1C 53\nread 3 : 51 52 53\n");
    told = "capture:" + Name("told.capture");
  }
  std::string told;
};

}  // namespace

TEST_CASE("pmsim: a simulated scanner answers as itself, and brings its model's id") {
  Host host({.device = "sim:extended:qm2500"});
  CHECK(host.served.ModelId() == "QM2500");
  CHECK(host.Write(kReset) == 0);
  CHECK(host.Read(1) == Bytes{0x06});
  CHECK(host.Write(kIdentity) == 0);
  const Bytes identity = host.Read(80);
  REQUIRE(identity.size() == 80);
  CHECK(identity[0] == 'B');
  CHECK(identity[1] == '7');
  CHECK(host.served.Complaint().empty());
}

TEST_CASE("pmsim: two devices of one name are two scanners") {
  Host first({.device = "sim:extended"});
  Host second({.device = "sim:extended"});
  CHECK(first.Write(kReset) == 0);
  CHECK(second.Read(1).empty());
  CHECK(first.Read(1) == Bytes{0x06});
}

TEST_CASE("pmsim: what the host does wrong is complained of before what was refused") {
  Host host({.device = "sim:extended"});
  host.Write({0x1C, 0x57});
  CHECK(host.Read(1) == Bytes{0x06});
  host.Write(Bytes(64, 0));
  CHECK(host.Read(1) == Bytes{0x15});
  CHECK(host.served.Complaint().starts_with("the scanner refused: "));
  CHECK(host.Read(5).empty());
  CHECK(host.result < 0);
  CHECK(host.served.Complaint().starts_with("violation: "));
}

TEST_CASE("pmsim: faults strike on the cable of a scanner of the catalog") {
  const Folder folder;
  folder.Write("f.json", R"({"faults": [{"at": {"transfer": 1}, "do": {"answer": "15"}}]})");
  Host host({.device = "sim:standard", .faultScript = folder.Name("f.json")});
  host.Write(kReset);
  CHECK(host.Read(1) == Bytes{0x15});
}

TEST_CASE("pmsim: the faults of a scanner file strike before those of a script") {
  const Folder folder;
  folder.Write("s.json", R"({"base": "standard", "modelId": "AB123",
                            "faults": [{"at": {"transfer": 1}, "do": {"answer": "31"}}]})");
  folder.Write("f.json", R"({"faults": [{"at": {"transfer": 1}, "do": {"answer": "32"}},
                                       {"at": {"transfer": 3}, "do": {"answer": "33"}}]})");
  Host host({.device = "sim:" + folder.Name("s.json"), .faultScript = folder.Name("f.json")});
  CHECK(host.served.ModelId() == "AB123");
  host.Write(kReset);
  CHECK(host.Read(1) == Bytes{0x31});
  host.Write(kReset);
  CHECK(host.Read(1) == Bytes{0x33});
}

TEST_CASE("pmsim: a captured scanner answers as it did, whoever called") {
  const Folder folder;
  Host host({.device = folder.told});
  CHECK(host.Write(kReset) == 0);
  CHECK(host.Read(1) == Bytes{0x06});
  CHECK(host.Write(kStatus) == 0);
  CHECK(host.Read(4) == Bytes{0x11, 0x22, 0x33, 0x44});
  CHECK(host.served.Complaint().empty());
}

TEST_CASE("pmsim: behind the first difference a captured scanner is silent") {
  const Folder folder;
  Host host({.device = folder.told});
  CHECK(host.Write(kStatus) == kTimeout);
  CHECK(host.Write(kReset) == kTimeout);
  CHECK(host.served.Complaint() ==
        folder.Name("told.capture") + ", line 3: expected write 2 : 1B 40, came write 2 : 1C 46");
}

TEST_CASE("pmsim: a tolerant one finds its way back, and complains all the same") {
  const Folder folder;
  Host host({.device = folder.told, .isTolerant = true});
  CHECK(host.Write(kStatus) == 0);
  CHECK(host.Read(4) == Bytes{0x11, 0x22, 0x33, 0x44});
  CHECK(host.served.Complaint().starts_with(folder.Name("told.capture") + ", line 3: expected"));
}

TEST_CASE(
    "pmsim: a captured scanner brings the id of its model, and reads pass the calls' borders") {
  const Folder folder;
  folder.Write("model.capture",
               "pmddb832 capture 1\nhost modelId = \"QM2500\"\ncall PMOpenScanner\n"
               "write 2 : 1B 40\nread 1 : 06\nreturn PMOpenScanner\n"
               "call PMReset\nread 2 : 07 08\nreturn PMReset\n");
  Host host({.device = "capture:" + folder.Name("model.capture"), .isTolerant = true});
  CHECK(host.served.ModelId() == "QM2500");
  host.Write(kReset);
  CHECK(host.Read(3) == Bytes{0x06, 0x07, 0x08});
}

TEST_CASE("pmsim: a captured scanner does not need its file any more") {
  const Folder folder;
  Host host({.device = folder.told});
  std::filesystem::remove(folder.Name("told.capture"));
  host.Write(kReset);
  CHECK(host.Read(1) == Bytes{0x06});
}

TEST_CASE("pmsim: a recording has each transfer at once, and is a captured scanner again") {
  const Folder folder;
  Bytes identity;
  {
    Host host({.device = "sim:extended", .recording = folder.Name("new.capture")});
    host.Write(kReset);
    host.Read(1);
    CHECK(folder.Text("new.capture").find("read 1 : 06 ") != std::string::npos);
    host.Write(kIdentity);
    identity = host.Read(80);
  }
  Host again({.device = "capture:" + folder.Name("new.capture")});
  again.Write(kReset);
  CHECK(again.Read(1) == Bytes{0x06});
  again.Write(kIdentity);
  CHECK(again.Read(80) == identity);
}

#ifndef _WIN32
TEST_CASE("pmsim: a recording that cannot be written on is told, and the conversation goes on") {
  Host host(
      {.device = "sim:extended+nak-command=W", .recording = "/dev/full", .mayOverwrite = true});
  host.Write({0x1C, 0x57});
  CHECK(host.Read(1) == Bytes{0x15});
  CHECK(host.served.Complaint() == "/dev/full could not be written on: the capture ends too early");
}
#endif
