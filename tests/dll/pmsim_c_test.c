// Pmsim.dll in C: its header, its import library, and a device that is called through its table.

#include <windows.h>

#include <assert.h>
#include <sti.h>
#include <stddef.h>
#include <stdio.h>
#include <string.h>

#include "pmsim.h"

static_assert(sizeof(PmsimRequest) == 2096, "request");
static_assert(offsetof(PmsimRequest, size) == 0, "size");
static_assert(offsetof(PmsimRequest, flags) == 4, "flags");
static_assert(offsetof(PmsimRequest, device) == 8, "device");
static_assert(offsetof(PmsimRequest, faults) == 16, "faults");
static_assert(offsetof(PmsimRequest, original) == 24, "original");
static_assert(offsetof(PmsimRequest, capture) == 32, "capture");
static_assert(offsetof(PmsimRequest, modelId) == 40, "modelId");
static_assert(offsetof(PmsimRequest, message) == 48, "message");
static_assert(PMSIM_OVERWRITE == 1 && PMSIM_TOLERANT == 2, "flags");

static int Fail(const char* what) {
  fprintf(stderr, "%s\n", what);
  return 1;
}

static int Talk(IStiDevice* device) {
  unsigned char reset[] = {0x1B, 0x40};
  unsigned char answer[4] = {0};
  DWORD count = 1;
  if (device->lpVtbl->RawWriteData(device, reset, 2, NULL) != S_OK) return Fail("no write");
  if (device->lpVtbl->RawReadData(device, answer, &count, NULL) != S_OK) return Fail("no read");
  if (count != 1 || answer[0] != 0x06 || answer[1] != 0) return Fail("no acknowledgement");
  return 0;
}

int main(void) {
  static PmsimRequest request;
  IStiDevice* device = NULL;
  request.size = sizeof(request);
  request.device = L"sim:extended:QM2500";
  if (PmsimCreateDevice(&request, &device) != S_OK) return Fail("no device");
  if (strcmp(request.modelId, "QM2500") != 0) return Fail("another model");
  if (Talk(device) != 0) return 1;
  if (device->lpVtbl->Release(device) != 0) return Fail("a reference is left");

  request.device = L"sim:extnded";
  if (PmsimCreateDevice(&request, &device) != E_INVALIDARG) return Fail("a misspelt device");
  if (device != NULL || request.modelId[0] != 0) return Fail("something of the first device");
  if (wcsstr(request.message, L"did you mean \"extended\"?") == NULL) return Fail("no message");
  return 0;
}
