#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "fuzz/conversation.h"
#include "fuzz/fuzz_scanner.h"
#include "interface/scanner_settings.h"
#include "tests/safety/failing_allocation.h"
#include "transport/acquisition_records.h"
#include "transport/general_cmd.h"

namespace pmddb832::fuzz {

// A host that loads the module, holds one conversation, and unloads it at the end of the scope.
class FuzzHost {
 public:
  // The conversation must outlive the host. There is one host at a time.
  FuzzHost(const Conversation& conversation, Family family);
  ~FuzzHost();
  FuzzHost(const FuzzHost&) = delete;
  FuzzHost& operator=(const FuzzHost&) = delete;

  // Opens the scanner, unless the host block says otherwise, and makes all calls.
  void Converse();

  // Makes the next call, if one is left: each is made once, so that calls within calls come to an
  // end.
  void MakeNextCall();
  bool IsWithinCall() const { return depth_ > 1; }

  void Open();
  void Unload();
  // Takes the scan of the host block into the record.
  void ChooseScan();
  // Sets a scan up and acquires it in buffers of `rows` announced lines.
  void Scan(std::uint32_t outputFormat, std::uint32_t rows);
  void SetUp(std::uint32_t outputFormat, ProgressCallback progress);
  // A band of `rows` announced lines. False when the image is done, the call failed or the host has
  // enough.
  bool Acquire(std::uint32_t rows, std::uint32_t status);
  bool AcquireInto(std::size_t bytes, std::uint32_t status);

  FuzzScanner device;
  ScannerSettings settings{};

 private:
  struct CommandSet {
    GeneralCmd* set;
    bool isExtended;
  };

  void Surround();
  void OpenWithLog();
  void NoteCommandSet();
  void DestroyFormerCommandSets();

  const Conversation& conversation_;
  std::optional<tests::AllocationLimit> allocations_;
  ShortList<CommandSet, 56> commandSets_;  // of all opens since the load, at most two of each
  std::size_t callsMade_ = 0;
  int depth_ = 0;
  std::uint32_t lineBytes_ = 0;
  std::size_t bytesWanted_ = 0;  // in all bands
};

}  // namespace pmddb832::fuzz
