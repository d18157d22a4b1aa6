#pragma once

#include "transport/call.h"
#include "transport/device_driver.h"

namespace pmddb832 {

// A call of the host from its export to its return. The host may call again from within: out of its
// device, its progress routine or the repaint of its window.
class CallScope {
 public:
  CallScope(ScannerSettings& settings, DeviceDriver* channel);
  ~CallScope();
  CallScope(const CallScope&) = delete;
  CallScope& operator=(const CallScope&) = delete;

  // Takes the channel, which is about to be destroyed, from every call under way.
  static void ForgetChannel();

  Call call;

 private:
  CallScope* const outer_;
};

}  // namespace pmddb832
