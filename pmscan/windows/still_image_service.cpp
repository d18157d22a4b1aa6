#include "pmscan/windows/still_image_service.h"

#include <memory>
#include <span>

#include "pmscan/command_line/failure.h"
#include "pmscan/report/error_codes.h"
#include "pmscan/windows/wide_text.h"

namespace pmscan {
namespace {

using CreateInstance = HRESULT(STDAPICALLTYPE*)(HINSTANCE, DWORD, IStillImageW**, LPUNKNOWN);

// A null pointer is an empty text.
std::string Text(const wchar_t* wide) {
  return wide == nullptr ? std::string() : ToUtf8(wide);
}

StillImageEntry EntryOf(const STI_DEVICE_INFORMATIONW& device) {
  return {Text(device.szDeviceInternalName), Text(device.pszLocalName),
          Text(device.pszVendorDescription), Text(device.pszPortName)};
}

}  // namespace

StillImageService::StillImageService() : library_(LoadLibraryW(L"sti.dll")) {
  const auto create = library_ == nullptr
                          ? nullptr
                          : reinterpret_cast<CreateInstance>(reinterpret_cast<void*>(
                                GetProcAddress(library_, "StiCreateInstanceW")));
  const HRESULT result = create == nullptr ? E_NOTIMPL
                                           : create(GetModuleHandleW(nullptr), STI_VERSION_REAL,
                                                    service_.Receive(), nullptr);
  if (SUCCEEDED(result) && service_.Get() != nullptr) return;
  if (library_ != nullptr) FreeLibrary(library_);
  throw Failure(kDeviceUnavailable, "This system has no still-image service (sti.dll).");
}

StillImageService::~StillImageService() {
  service_.Reset();
  FreeLibrary(library_);
}

std::vector<StillImageEntry> StillImageService::Devices() const {
  constexpr DWORD kAnyType = 0;
  DWORD count = 0;
  void* buffer = nullptr;
  const HRESULT result = service_->GetDeviceList(kAnyType, STIEDFL_ALLDEVICES, &count, &buffer);
  const std::unique_ptr<void, decltype(&LocalFree)> owner(buffer, &LocalFree);
  RequireSuccess(result, kDeviceUnavailable, "list the devices", "still-image service");
  std::vector<StillImageEntry> entries;
  if (buffer == nullptr) return entries;
  for (const auto& device : std::span(static_cast<const STI_DEVICE_INFORMATIONW*>(buffer), count)) {
    entries.push_back(EntryOf(device));
  }
  return entries;
}

void StillImageService::Open(const StillImageEntry& entry, ComPointer<IStiDevice>& device) const {
  std::wstring name = ToWide(entry.internalName);
  RequireSuccess(
      service_->CreateDevice(name.data(), STI_DEVICE_CREATE_DATA, device.Receive(), nullptr),
      kDeviceUnavailable, "open the device for data", entry.localName);
}

}  // namespace pmscan
