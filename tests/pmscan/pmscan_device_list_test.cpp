#include <doctest/doctest.h>

#include <nlohmann/json.hpp>

#include "pmscan/devices/device_list.h"
#include "tests/pmscan/refusal.h"

namespace {

using pmscan::StillImageEntry;

const std::vector<StillImageEntry> kEntries{
    {"{id}\\0000", "SCANNER QM-2700", "Scanner maker", "Usbscan0"},
    {"{id}\\0001", "Camera", "", ""},
    {"{id}\\0002", "Camera", "", ""},
};

TEST_CASE("pmscan: a still-image device is named by its local or its internal name") {
  CHECK(pmscan::FindStillImageEntry(kEntries, "sti:SCANNER QM-2700").internalName == "{id}\\0000");
  CHECK(pmscan::FindStillImageEntry(kEntries, "sti:{id}\\0002").localName == "Camera");
}

TEST_CASE("pmscan: a local name that two devices have names none of them") {
  CHECK(pmscan::tests::RefusalOf([] { pmscan::FindStillImageEntry(kEntries, "sti:Camera"); }) ==
        "64 There is no one device \"sti:Camera\"; the still-image service knows these: "
        "sti:SCANNER QM-2700, sti:{id}\\0001, sti:{id}\\0002.");
}

TEST_CASE("pmscan: only names behind sti: are those of still-image devices") {
  CHECK(pmscan::IsStillImageName("sti:x"));
  CHECK(pmscan::IsStillImageName("STI:x"));
  CHECK(!pmscan::IsStillImageName("sim:x"));
}

TEST_CASE("pmscan: the list of devices tells what --device takes") {
  const pmscan::DeviceList list{{{"sim:extended", ""},
                                 {"sim:extended:QM2700", "SCANNER QM-2700"},
                                 {"sim:extended:QM2500", "SCANNER QM-2500", "feeder", 12, 2400},
                                 {"sim:standard:RV3100", "SCANNER RV-3100", "", 14, 3200}},
                                {kEntries[0]},
                                ""};
  CHECK(pmscan::DeviceListText(list) ==
        "Simulated scanners\n"
        "  sim:extended\n"
        "  sim:extended:QM2700       SCANNER QM-2700\n"
        "  sim:extended:QM2500       SCANNER QM-2500   2400 dpi, 12 bits, feeder\n"
        "  sim:standard:RV3100       SCANNER RV-3100   3200 dpi, 14 bits\n"
        "\n"
        "Still-image devices of this system\n"
        "  sti:SCANNER QM-2700       Scanner maker, at Usbscan0\n");
}

TEST_CASE("pmscan: the list says why there are no still-image devices") {
  CHECK(pmscan::DeviceListText({{}, {}, "no service"}).ends_with("  none: no service\n"));
  CHECK(pmscan::DeviceListText({}).ends_with("  none: the system knows no such device\n"));
}

TEST_CASE("pmscan: the list tells the scanner files beside the program") {
  const pmscan::DeviceList list{{}, {}, "no service", {{"sim:office.json", "Three sheets."}}};
  CHECK(pmscan::DeviceListText(list) ==
        "Simulated scanners\n"
        "\n"
        "Simulated scanners by file\n"
        "  sim:office.json               Three sheets.\n"
        "\n"
        "Still-image devices of this system\n"
        "  none: no service\n");
  const pmscan::Json json = pmscan::DeviceListJson(list);
  CHECK(json["scannerFiles"][0]["device"] == "sim:office.json");
  CHECK(json["scannerFiles"][0]["description"] == "Three sheets.");
}

TEST_CASE("pmscan: the list of devices as JSON has the same names") {
  const pmscan::Json json = pmscan::DeviceListJson({{{"sim:extended", ""}}, kEntries, ""});
  CHECK(json["simulated"][0]["device"] == "sim:extended");
  CHECK(json["stillImage"][0]["device"] == "sti:SCANNER QM-2700");
  CHECK(json["stillImage"][1]["device"] == "sti:{id}\\0001");
  CHECK(json["stillImage"][0]["port"] == "Usbscan0");
  CHECK(json["whyNoService"] == "");
}

}  // namespace
