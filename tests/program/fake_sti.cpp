// Stands in for the still-image service's library. The devices' answers come from a simulated
// scanner; the environment says what shall go wrong:
//
//   FAKE_STI_LOG    file that gets a line for each call that matters
//   FAKE_STI_FAULT  "lock": the device is in use; "open": it does not open; "list": no list;
//                   "silent": it never answers; "stuck": it does not after half a megabyte

#define WIN32_LEAN_AND_MEAN
#include <windows.h>
// windows.h comes first: sti.h builds on it.
#include <sti.h>

#include <cstdint>
#include <cstdlib>
#include <cwchar>
#include <fstream>
#include <memory>
#include <string>

#include "simulator/catalog/catalog.h"
#include "simulator/page/test_page.h"

namespace {

constexpr HRESULT kInUse = static_cast<HRESULT>(0x80070021);

void Note(const std::string& line) {
  const char* const file = std::getenv("FAKE_STI_LOG");
  if (file != nullptr) std::ofstream(file, std::ios::app) << line << "\n";
}

bool HasFault(const char* name) {
  const char* const fault = std::getenv("FAKE_STI_FAULT");
  return fault != nullptr && std::string(fault) == name;
}

class FakeDevice final : public IStiDevice {
 public:
  STDMETHODIMP QueryInterface(REFIID, LPVOID*) noexcept override { return E_NOINTERFACE; }
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() noexcept override {
    const ULONG left = --references_;
    Note("device has " + std::to_string(left) + " references");
    if (left == 0) delete this;
    return left;
  }
  STDMETHODIMP LockDevice(DWORD milliseconds) noexcept override {
    Note("lock within " + std::to_string(milliseconds) + " ms");
    return HasFault("lock") ? kInUse : S_OK;
  }
  STDMETHODIMP UnLockDevice() noexcept override {
    Note("unlock");
    return S_OK;
  }
  STDMETHODIMP RawReadData(LPVOID buffer, LPDWORD count, LPOVERLAPPED) noexcept override {
    constexpr std::uint64_t kUntilStuck = 512 * 1024;
    if (HasFault("silent") || (HasFault("stuck") && delivered_ > kUntilStuck)) {
      Note("stuck");
      Sleep(INFINITE);
    }
    std::uint32_t bytes = *count;
    const HRESULT result = scanner_->RawReadData(buffer, &bytes, nullptr);
    *count = bytes;
    delivered_ += bytes;
    return result;
  }
  STDMETHODIMP RawWriteData(LPVOID buffer, DWORD count, LPOVERLAPPED) noexcept override {
    return scanner_->RawWriteData(buffer, count, nullptr);
  }

  STDMETHODIMP Initialize(HINSTANCE, LPCWSTR, DWORD, DWORD) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetCapabilities(PSTI_DEV_CAPS) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetStatus(PSTI_DEVICE_STATUS) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP DeviceReset() noexcept override { return E_NOTIMPL; }
  STDMETHODIMP Diagnostic(LPSTI_DIAG) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP Escape(STI_RAW_CONTROL_CODE, LPVOID, DWORD, LPVOID, DWORD,
                      LPDWORD) noexcept override {
    return E_NOTIMPL;
  }
  STDMETHODIMP GetLastError(LPDWORD) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP RawReadCommand(LPVOID, LPDWORD, LPOVERLAPPED) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP RawWriteCommand(LPVOID, DWORD, LPOVERLAPPED) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP Subscribe(LPSTISUBSCRIBE) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetLastNotificationData(LPSTINOTIFY) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP UnSubscribe() noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetLastErrorInfo(STI_ERROR_INFO*) noexcept override { return E_NOTIMPL; }

 private:
  ULONG references_ = 1;
  std::uint64_t delivered_ = 0;  // bytes
  const std::unique_ptr<simulator::Scanner> scanner_ =
      simulator::MakeScanner("extended", simulator::RenderTestPage(300));
};

class FakeService final : public IStillImageW {
 public:
  STDMETHODIMP QueryInterface(REFIID, LPVOID*) noexcept override { return E_NOINTERFACE; }
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() noexcept override {
    const ULONG left = --references_;
    Note("service has " + std::to_string(left) + " references");
    if (left == 0) delete this;
    return left;
  }
  STDMETHODIMP GetDeviceList(DWORD, DWORD, DWORD* count, LPVOID* buffer) noexcept override {
    if (HasFault("list")) return E_FAIL;
    auto* const devices = static_cast<STI_DEVICE_INFORMATIONW*>(
        LocalAlloc(LPTR, 2 * sizeof(STI_DEVICE_INFORMATIONW)));
    Describe(devices[0], L"{fake}\\0000", const_cast<LPWSTR>(L"Desk scanner"));
    Describe(devices[1], L"{fake}\\0001", const_cast<LPWSTR>(L"Camera"));
    *count = 2;
    *buffer = devices;
    return S_OK;
  }
  STDMETHODIMP CreateDevice(LPWSTR name, DWORD mode, PSTIDEVICE* device,
                            LPUNKNOWN) noexcept override {
    const std::wstring wide(name);
    Note("create " + std::string(wide.begin(), wide.end()) + " in mode " + std::to_string(mode));
    if (HasFault("open")) return E_ACCESSDENIED;
    *device = new FakeDevice;
    return S_OK;
  }

  STDMETHODIMP Initialize(HINSTANCE, DWORD) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetDeviceInfo(LPWSTR, LPVOID*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetDeviceValue(LPWSTR, LPWSTR, LPDWORD, LPBYTE, LPDWORD) noexcept override {
    return E_NOTIMPL;
  }
  STDMETHODIMP SetDeviceValue(LPWSTR, LPWSTR, DWORD, LPBYTE, DWORD) noexcept override {
    return E_NOTIMPL;
  }
  STDMETHODIMP GetSTILaunchInformation(LPWSTR, DWORD*, LPWSTR) noexcept override {
    return E_NOTIMPL;
  }
  STDMETHODIMP RegisterLaunchApplication(LPWSTR, LPWSTR) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP UnregisterLaunchApplication(LPWSTR) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP EnableHwNotifications(LPCWSTR, WINBOOL) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetHwNotificationState(LPCWSTR, WINBOOL*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP RefreshDeviceBus(LPCWSTR) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP LaunchApplicationForDevice(LPWSTR, LPWSTR, LPSTINOTIFY) noexcept override {
    return E_NOTIMPL;
  }
  STDMETHODIMP SetupDeviceParameters(PSTI_DEVICE_INFORMATIONW) noexcept override {
    return E_NOTIMPL;
  }
  STDMETHODIMP WriteToErrorLog(DWORD, LPCWSTR) noexcept override { return E_NOTIMPL; }

 private:
  static void Describe(STI_DEVICE_INFORMATIONW& device, const wchar_t* internalName, LPWSTR name) {
    device.dwSize = sizeof(device);
    std::wcsncpy(device.szDeviceInternalName, internalName, STI_MAX_INTERNAL_NAME_LENGTH - 1);
    device.pszLocalName = name;
    device.pszVendorDescription = const_cast<LPWSTR>(L"Scanner maker");
    device.pszPortName = const_cast<LPWSTR>(L"Usbscan0");
  }

  ULONG references_ = 1;
};

}  // namespace

// Exported, as all is where nothing says so: the service's header has declared it without.
extern "C" HRESULT STDAPICALLTYPE StiCreateInstanceW(HINSTANCE, DWORD version,
                                                     IStillImageW** service, LPUNKNOWN) {
  Note("service of version " + std::to_string(version));
  *service = new FakeService;
  return S_OK;
}
