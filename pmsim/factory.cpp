#include <pmsim.h>

#include <algorithm>
#include <new>

#include "pmscan/pictures/picture_reader.h"
#include "pmsim/com_apartment.h"
#include "pmsim/com_device.h"
#include "pmsim/system_text.h"

namespace pmsim {
namespace {

constexpr std::uint32_t kKnownFlags = PMSIM_OVERWRITE | PMSIM_TOLERANT;

// Keeps this library loaded to the end of the process: a device may live longer than its host means
// it to.
HMODULE StayLoaded() {
  HMODULE library = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                     reinterpret_cast<LPCWSTR>(&StayLoaded), &library);
  return library;
}

std::filesystem::path FolderOf(HMODULE library) {
  std::wstring file(PMSIM_TEXT_LIMIT, L'\0');
  file.resize(GetModuleFileNameW(library, file.data(), PMSIM_TEXT_LIMIT));
  return std::filesystem::path(file).parent_path();
}

std::string TextOf(const wchar_t* text, const char* what) {
  return Utf8Of(text, PMSIM_TEXT_LIMIT, what);
}

DeviceRequest Understand(const PmsimRequest& request) {
  if ((request.flags & ~kKnownFlags) != 0) {
    throw RequestError(
        "flags: expected PMSIM_OVERWRITE and PMSIM_TOLERANT at most, there are more");
  }
  return {.device = TextOf(request.device, "device"),
          .faultScript = TextOf(request.faults, "faults"),
          .original = TextOf(request.original, "original"),
          .recording = TextOf(request.capture, "capture"),
          .mayOverwrite = (request.flags & PMSIM_OVERWRITE) != 0,
          .isTolerant = (request.flags & PMSIM_TOLERANT) != 0};
}

IStiDevice* MakeDevice(PmsimRequest& request) {
  const DeviceRequest wanted = Understand(request);
  const ComApartment apartment;
  auto* const device =
      new ComDevice(wanted, {FolderOf(StayLoaded()) / "profiles", &pmscan::ReadPicture});
  const std::string modelId = device->ModelId();
  modelId.copy(request.modelId, sizeof(request.modelId) - 1);
  return device;
}

HRESULT Refuse(PmsimRequest& request, HRESULT result, const char* message) {
  try {
    StoreText(message, request.message, std::size(request.message));
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
  return result;
}

HRESULT Create(PmsimRequest& request, IStiDevice*& device) {
  try {
    device = MakeDevice(request);
    return S_OK;
  } catch (const std::bad_alloc&) {
    return Refuse(request, E_OUTOFMEMORY, "there is not enough memory for the device");
  } catch (const std::exception& reason) {
    return Refuse(request, E_INVALIDARG, reason.what());
  }
}

}  // namespace
}  // namespace pmsim

std::int32_t PmsimCreateDevice(PmsimRequest* request, IStiDevice** device) {
  if (device == nullptr) return E_POINTER;
  *device = nullptr;
  if (request == nullptr) return E_POINTER;
  if (request->size != sizeof(PmsimRequest)) return E_INVALIDARG;
  std::fill(std::begin(request->modelId), std::end(request->modelId), '\0');
  request->message[0] = L'\0';
  if (request->device == nullptr) return E_POINTER;
  return pmsim::Create(*request, *device);
}
