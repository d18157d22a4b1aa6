#include <doctest/doctest.h>

#include <cstring>

#include "pmscan/command_line/failure.h"
#include "pmscan/scan/module_exports.h"

namespace {

TEST_CASE("pmscan: a library that lacks an export is refused with the export's name") {
  const auto find = [](const char* name) -> void* {
    static int anything = 0;
    return std::strcmp(name, "PMAbortScan") == 0 ? nullptr : &anything;
  };
  CHECK_THROWS_WITH_AS(pmscan::BindExports(find), "The library has no function PMAbortScan.",
                       pmscan::Failure);
}

}  // namespace
