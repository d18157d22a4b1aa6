#include "interface/call_scope.h"

namespace pmddb832 {
namespace {

CallScope* innermost = nullptr;

}  // namespace

CallScope::CallScope(ScannerSettings& settings, DeviceDriver* channel)
    : call{settings, channel}, outer_(innermost) {
  innermost = this;
}

CallScope::~CallScope() {
  innermost = outer_;
}

void CallScope::ForgetChannel() {
  for (CallScope* scope = innermost; scope != nullptr; scope = scope->outer_) {
    scope->call.channel = nullptr;
  }
}

}  // namespace pmddb832
