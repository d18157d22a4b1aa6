#include <doctest/doctest.h>

#include <cstdlib>
#include <string>

#include "tests/program/pmscan_program.h"

namespace {

using pmscan::tests::ProgramResult;
using pmscan::tests::ProgramUnderTest;

bool Has(const std::string& text, const char* part) {
  return text.find(part) != std::string::npos;
}

// pmscan.exe with the stand-in for the still-image service, which fails as `fault` says.
struct Service : ProgramUnderTest {
  ProgramResult RunWith(const char* fault, const std::string& arguments) const {
    _putenv("FAKE_STI_LOG=log.txt");
    _putenv((std::string("FAKE_STI_FAULT=") + fault).c_str());
    return Run(arguments);
  }
};

// The program in a folder where there is no stand-in.
struct NoService : ProgramUnderTest {
  NoService() : ProgramUnderTest("../pmscan.exe") {}
};

TEST_CASE_FIXTURE(Service, "still image: the devices of the service are listed by name") {
  const ProgramResult result = RunWith("", "devices");
  CHECK(result.exitCode == 0);
  CHECK(Has(result.output, "  sti:Desk scanner          Scanner maker, at Usbscan0\n"));
  CHECK(Has(result.output, "  sti:Camera "));
  CHECK(Contents("log.txt") == "service of version 2\r\nservice has 0 references\r\n");
}

TEST_CASE_FIXTURE(Service, "still image: a scan opens the device for data and has it alone") {
  const ProgramResult result =
      RunWith("", "scan -o a.bmp --mode grey --resolution 50 --device \"sti:Desk scanner\"");
  CHECK(result.exitCode == 0);
  CHECK(Contents("log.txt") ==
        "service of version 2\r\n"
        "create {fake}\\0000 in mode 2\r\n"
        "lock within 5000 ms\r\n"
        "unlock\r\n"
        "device has 0 references\r\n"
        "service has 0 references\r\n");
}

TEST_CASE_FIXTURE(Service, "still image: the picture is that of the same scanner beside it") {
  RunWith("", "scan -o a.bmp --mode grey --resolution 50 --device \"sti:Desk scanner\"");
  RunWith("", "scan -o b.bmp --mode grey --resolution 50 --device sim:extended");
  CHECK(!Contents("a.bmp").empty());
  CHECK(Contents("a.bmp") == Contents("b.bmp"));
}

TEST_CASE_FIXTURE(Service, "still image: an internal name will do as well") {
  CHECK(RunWith("", "info --device sti:{fake}\\0000").exitCode == 0);
}

TEST_CASE_FIXTURE(Service, "still image: the device is given back when the scan fails") {
  const ProgramResult result =
      RunWith("", "scan -o a.png --source feeder --device sti:{fake}\\0000");
  CHECK(result.exitCode == 65);
  CHECK(
      Contents("log.txt").ends_with("lock within 5000 ms\r\n"
                                    "unlock\r\n"
                                    "device has 0 references\r\n"
                                    "service has 0 references\r\n"));
}

TEST_CASE_FIXTURE(Service, "still image: a device that is in use is not unlocked, but given back") {
  const ProgramResult result = RunWith("lock", "info --device sti:{fake}\\0000");
  CHECK(result.exitCode == 68);
  CHECK(Has(result.errors, "another program uses it"));
  CHECK(
      Contents("log.txt").ends_with("lock within 5000 ms\r\n"
                                    "device has 0 references\r\n"
                                    "service has 0 references\r\n"));
}

TEST_CASE_FIXTURE(Service, "still image: a device that does not open leaves nothing behind") {
  CHECK(RunWith("open", "info --device sti:{fake}\\0000").exitCode == 68);
  CHECK(Contents("log.txt").ends_with("in mode 2\r\nservice has 0 references\r\n"));
}

TEST_CASE_FIXTURE(Service, "still image: an unknown device is answered with those that there are") {
  const ProgramResult result = RunWith("", "info --device sti:Printer");
  CHECK(result.exitCode == 64);
  CHECK(Has(result.errors, "knows these: sti:Desk scanner, sti:Camera."));
  CHECK(!Has(Contents("log.txt"), "create"));
}

TEST_CASE_FIXTURE(Service, "still image: a list that does not come is told, and no failure") {
  const ProgramResult result = RunWith("list", "devices");
  CHECK(result.exitCode == 0);
  CHECK(Has(result.output, "  none: still-image service: cannot list the devices"));
}

TEST_CASE_FIXTURE(NoService, "still image: where the service is missing that is said plainly") {
  const ProgramResult result = Run("devices");
  const ProgramResult scan = Run("scan -o a.png --device sti:any");
  CHECK(result.exitCode == 0);
  CHECK(Has(result.output, "  none: This system has no still-image service (sti.dll)."));
  CHECK(scan.exitCode == 68);
  CHECK(Has(scan.errors, "This system has no still-image service (sti.dll)."));
}

}  // namespace
