#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#include <doctest/doctest.h>
#include <objbase.h>
#include <wia.h>

#include <string>
#include <vector>

#include "simulator/catalog/catalog.h"
#include "tests/scans/whole_scan.h"

using namespace pmddb832;
using namespace pmddb832::tests;

namespace {

constexpr GUID kWiaLogClass = {
    0xA1E75357, 0x881A, 0x419E, {0x83, 0xE2, 0xBB, 0x16, 0xDB, 0x19, 0x7C, 0x68}};
constexpr GUID kWiaLogInterface = {
    0xA00C10B6, 0x82A1, 0x452F, {0x8B, 0x6C, 0x86, 0x06, 0x2A, 0xAD, 0x68, 0x90}};

struct Line {
  std::string text;
  LONG flags;
  LONG resourceId;
  LONG detail;
};

std::string Narrow(const wchar_t* text) {
  std::string narrow;
  for (; *text != L'\0'; ++text) narrow += static_cast<char>(*text);
  return narrow;
}

// The host's log: keeps what it is given.
class FakeLog final : public IWiaLog {
 public:
  HRESULT WINAPI QueryInterface(REFIID id, void** object) override {
    if (!IsEqualGUID(id, kWiaLogInterface) && !IsEqualGUID(id, IID_IUnknown)) return E_NOINTERFACE;
    *object = this;
    AddRef();
    return S_OK;
  }
  ULONG WINAPI AddRef() override { return ++references; }
  ULONG WINAPI Release() override { return --references; }
  HRESULT WINAPI InitializeLog(LONG moduleInstance) override {
    instance = moduleInstance;
    return S_OK;
  }
  HRESULT WINAPI hResult(HRESULT) override { return S_OK; }
  HRESULT WINAPI Log(LONG flags, LONG resourceId, LONG detail, BSTR text) override {
    lines.push_back({Narrow(text), flags, resourceId, detail});
    return S_OK;
  }

  ULONG references = 0;
  LONG instance = 0;
  std::vector<Line> lines;
};

class FakeLogFactory final : public IClassFactory {
 public:
  explicit FakeLogFactory(FakeLog& made) : log_(made) {}
  HRESULT WINAPI QueryInterface(REFIID id, void** object) override {
    if (!IsEqualGUID(id, IID_IClassFactory) && !IsEqualGUID(id, IID_IUnknown)) return E_NOINTERFACE;
    *object = this;
    return S_OK;
  }
  ULONG WINAPI AddRef() override { return 1; }
  ULONG WINAPI Release() override { return 1; }
  HRESULT WINAPI CreateInstance(IUnknown*, REFIID id, void** object) override {
    return log_.QueryInterface(id, object);
  }
  HRESULT WINAPI LockServer(BOOL) override { return S_OK; }

 private:
  FakeLog& log_;
};

// A process in which the host's log can be created.
struct LoggingHost {
  LoggingHost() : factory(log) {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    CoRegisterClassObject(kWiaLogClass, &factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                          &registration);
  }
  ~LoggingHost() {
    CoRevokeClassObject(registration);
    CoUninitialize();
  }

  FakeLog log;
  FakeLogFactory factory;
  DWORD registration = 0;
};

// Every line that enters a routine is followed by the one that leaves it, properly nested.
std::string NestingError(const std::vector<Line>& lines) {
  std::vector<std::string> open;
  for (const Line& line : lines) {
    const std::size_t comma = line.text.find(", ");
    if (comma == std::string::npos) continue;
    const std::string name = line.text.substr(0, comma);
    if (line.text.substr(comma) == ", entering") {
      open.push_back(name);
    } else if (open.empty() || open.back() != name) {
      return "left without having been entered last: " + name;
    } else {
      open.pop_back();
    }
  }
  return open.empty() ? "" : "never left: " + open.back();
}

}  // namespace

TEST_CASE("a load, a scan and an unload are traced to the host's log") {
  LoggingHost logging;
  const auto scanner = simulator::MakeScanner("extended", ColourPicture(64, 48));
  {
    WholeScan host(*scanner);
    REQUIRE(host.Open());
    CHECK(host.Acquire(5).rows.size() == 48);
    const auto instance = reinterpret_cast<std::uintptr_t>(GetModuleHandleA("Pmddb832.dll"));
    CHECK(logging.log.instance == static_cast<LONG>(instance));
    CHECK(logging.log.references == 1);
  }
  const std::vector<Line>& lines = logging.log.lines;
  REQUIRE(lines.size() > 100);
  CHECK(lines.front().text == "driver Loaded successfully");
  CHECK(lines.front().detail == 1);
  CHECK(lines[1].text == "Pmddb832::PMInit, entering");
  CHECK(lines[1].detail == 3);
  CHECK(lines.back().text == "driver Unloaded successfully");
  CHECK(lines.back().detail == 1);
  CHECK(NestingError(lines) == "");
  for (const Line& line : lines) {
    CHECK(line.flags == 1);
    CHECK(line.resourceId == 0);
  }
  CHECK(logging.log.references == 0);
}

TEST_CASE("the names of the trace are those that the host's log knows") {
  LoggingHost logging;
  const auto scanner = simulator::MakeScanner("extended", ColourPicture(64, 48));
  WholeScan host(*scanner);
  REQUIRE(host.Open());
  host.module->EnableOption(0);
  std::string all;
  for (const Line& line : logging.log.lines) all += line.text + "\n";
  for (const char* name : {"Sddnt::DeviceDriver", "Sddnt::IsReady", "Checkcmd::GetLevelInfo",
                           "Sgeneral::LocalType::SendEscCode", "Sgeneral::GeneralCmd::ResetScanner",
                           "Extcmd::BildScannerInfo", "Extcmd::GetScannerProductName",
                           "Pmddb832::ExtCommandSupport", "Pmddb832::PMEnnableOption"}) {
    CAPTURE(name);
    CHECK(all.find(std::string(name) + ", entering\n") != std::string::npos);
    CHECK(all.find(std::string(name) + ", leaving\n") != std::string::npos);
  }
}
