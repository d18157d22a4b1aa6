// What Pmsim.dll exports, for C and C++: simulated and captured scanners for any host that takes an
// IStiDevice. x64 only. hosting.md shows a host.

#ifndef PMSIM_H
#define PMSIM_H

#include <stdint.h>
#include <wchar.h>

#ifdef __cplusplus
extern "C" {
#endif

// Windows' still-image device (sti.h).
struct IStiDevice;

// The file for the capture may replace one that is there.
#define PMSIM_OVERWRITE 1u
// A captured scanner finds its way back after the host did something else than the capture tells.
// Without this every transfer behind the first difference fails.
#define PMSIM_TOLERANT 2u

// Characters of a text, with the zero at its end.
#define PMSIM_TEXT_LIMIT 32768
#define PMSIM_MESSAGE_LIMIT 1024

// What a device shall be. Texts are UTF-16 with a zero at their end; they are read during the call
// only. All that is not asked for is zero or null. Names of files without a folder are looked for
// in the current folder; those of scanner files then in the folder "profiles" beside Pmsim.dll.
typedef struct PmsimRequest {
  // sizeof(PmsimRequest): of any other size nothing is read or written.
  uint32_t size;
  // PMSIM_OVERWRITE, PMSIM_TOLERANT.
  uint32_t flags;
  // "sim:NAME", a simulated scanner with its defects, as in "sim:extended:QM2500+pages=3";
  // "sim:FILE.json", one that a scanner file describes; "capture:FILE", one that answers as it did
  // in a capture.
  const wchar_t* device;
  // Fault script for a simulated scanner, or null.
  const wchar_t* faults;
  // Picture file that lies on the bed of a simulated scanner, or null: that of its scanner file,
  // else a test page.
  const wchar_t* original;
  // File that gets a capture of all transfers, each at once when it is over, or null.
  const wchar_t* capture;
  // Written on success: the model id that the host has of the scanner, for the record of the same
  // name; empty when any will do.
  char modelId[8];
  // Written in both cases: empty, or in words why there is no device.
  wchar_t message[PMSIM_MESSAGE_LIMIT];
} PmsimRequest;

// Makes a device, with one reference for the caller, and stores it in *device: null on failure.
// Returns an HRESULT:
//
//   S_OK
//   E_POINTER      a null for the request, for its device, or for the place of the device
//   E_INVALIDARG   another size of the record, an unknown flag, a text that is too long or no
//                  UTF-16, or what `message` tells: a name, a file, a capture that exists
//   E_OUTOFMEMORY
//
// The device may be called from any thread; its calls wait for one another. Each device is a
// scanner of its own. It has
//
//   QueryInterface       IUnknown and IStiDevice
//   AddRef, Release      the last Release closes the capture
//   LockDevice           waits until it is unlocked; ERROR_LOCK_VIOLATION as HRESULT when that
//   takes
//                        longer. Transfers do not ask for the lock
//   UnLockDevice         S_FALSE when it is not locked
//   RawReadData          a real scanner would hang where this one fails with what there is
//   RawWriteData         OVERLAPPED is not taken: E_INVALIDARG
//   GetLastError         the result of the last transfer that failed, else 0
//   GetLastErrorInfo     that result; in words what the host did wrong first, else what the scanner
//                        refused last, cut to 254 characters. A capture that cannot be written on
//                        is told before these, and does not stop the transfers
//
// and answers E_NOTIMPL to all else. Once it was asked for a device, Pmsim.dll stays loaded until
// the process ends.
int32_t PmsimCreateDevice(PmsimRequest* request, struct IStiDevice** device);

#ifdef __cplusplus
}
#endif

#endif
