#pragma once

#include <map>
#include <string>
#include <vector>

namespace documents {

// The lines of the test case with that name, and above them a comment that names its file. Throws
// DocumentError when there is none.
std::vector<std::string> QuotedTest(const std::string& name);

// Where each test case of the project stands, by its name: "tests/wire/wire_block_test.cpp".
const std::map<std::string, std::string>& TestCases();

}  // namespace documents
