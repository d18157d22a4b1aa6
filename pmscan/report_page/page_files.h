#pragma once

#include <string_view>

// The files of pmscan/report_page/page, which the build makes part of the program.
namespace pmscan::page_files {

// Holds "/* style */", "/* script */" and "/* data */", once each and in this order, where these
// belong.
extern const std::string_view kPage;
extern const std::string_view kStyle;
extern const std::string_view kScript;  // all scripts, one behind the other

}  // namespace pmscan::page_files
