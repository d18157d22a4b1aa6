#include <doctest/doctest.h>

#include <sstream>

#include "capture/file/capture_reader.h"

namespace {

// What the reader says of a file with such a text.
std::string TitleError(const std::string& text) {
  std::istringstream stream(text);
  try {
    capture::ReadCapture(stream, "c.txt");
  } catch (const capture::FormatError& error) {
    return error.what();
  }
  return "none";
}

// The same of a capture with such lines behind its title.
std::string ErrorOf(const std::string& lines) {
  return TitleError("pmddb832 capture 1\n" + lines);
}

TEST_CASE("capture: a file that is no capture is refused") {
  const std::string title = "expected \"pmddb832 capture 1\", the first line of every capture, ";
  CHECK(TitleError("") ==
        "c.txt, line 1: " + title + "came the end of the file. Name a file that holds a capture.");
  CHECK(TitleError("\x89PNG\n") ==
        "c.txt, line 1: " + title + "came \"\x89PNG\". Name a file that pmscan --capture wrote.");
  CHECK(TitleError("pmddb832 capture 2\n") ==
        "c.txt, line 1: " + title + "came \"2\". Name a file that pmscan --capture wrote.");
}

TEST_CASE("capture: an unknown entry is refused") {
  CHECK(ErrorOf("\nrite 1 : 06\n") ==
        "c.txt, line 3: expected host, call, write, read, module or return, came \"rite\". "
        "Correct the word, or put # in front of the line.");
}

TEST_CASE("capture: a transfer needs its length") {
  CHECK(ErrorOf("read\n") ==
        "c.txt, line 2: expected how many bytes the module asked to move, came the end of the "
        "line. Complete the line, or take it away.");
  CHECK(ErrorOf("write x : 06\n") ==
        "c.txt, line 2: expected how many bytes the module asked to move, came \"x\". "
        "Write a number of at most 32 bits, decimal or as 0x and hexadecimal digits.");
}

TEST_CASE("capture: no more comes than was asked for") {
  CHECK(ErrorOf("read 1 got 2 : 06 06\n") ==
        "c.txt, line 2: expected at most the 1 byte that were asked for, came \"2\". "
        "Correct one of the lengths.");
}

TEST_CASE("capture: a result has eight digits") {
  CHECK(ErrorOf("read 1 got 0 result 79\n") ==
        "c.txt, line 2: expected the device interface's result, came \"79\". "
        "Write 8 hexadecimal digits.");
}

TEST_CASE("capture: the bytes are as many as their entry says") {
  CHECK(ErrorOf("write 3 : 1C 49\n") ==
        "c.txt, line 2: expected 3 bytes, came 2 bytes. "
        "Correct the bytes, or the length that the entry tells.");
  CHECK(ErrorOf("read 3 :\n+ 01 02\n+ 03 04\n") ==
        "c.txt, line 4: expected 3 bytes, came more. "
        "Correct the bytes, or the length that the entry tells.");
  CHECK(ErrorOf("read 3 :\n+ 01\n* 4000000000\n") ==
        "c.txt, line 4: expected 3 bytes, came more. "
        "Correct the bytes, or the length that the entry tells.");
}

TEST_CASE("capture: bytes stand behind a colon") {
  CHECK(ErrorOf("write 1 06\n") ==
        "c.txt, line 2: expected a colon and 1 byte, came \"06\". "
        "Put a colon in front of the bytes.");
  CHECK(ErrorOf("write 1\n") ==
        "c.txt, line 2: expected a colon and 1 byte, came the end of the line. "
        "Complete the line, or take it away.");
}

TEST_CASE("capture: a byte has two digits") {
  const std::string expected = "expected bytes of two hexadecimal digits each, came ";
  CHECK(ErrorOf("write 2 : 1C 4\n") == "c.txt, line 2: " + expected + "\"4\". Correct the digits.");
  CHECK(ErrorOf("read 1 :\n+ 0G\n") ==
        "c.txt, line 3: " + expected + "\"0G\". Correct the digits.");
}

TEST_CASE("capture: only a row of bytes comes again") {
  CHECK(ErrorOf("read 2 :\n* 2\n") ==
        "c.txt, line 3: expected a row of bytes in front of *, came none. "
        "Put the row there, behind +.");
  CHECK(ErrorOf("read 2 :\n+ 06\n* 1 2\n") ==
        "c.txt, line 4: expected the end of the line, came \"2\". "
        "Take the rest of the line away, or put # in front of it.");
}

TEST_CASE("capture: image data tells its last byte") {
  CHECK(ErrorOf("read 200 crc 00000000\n") ==
        "c.txt, line 2: expected last, and the last byte, came the end of the line. "
        "Complete the line, or take it away.");
  CHECK(ErrorOf("read 200 crc 00000000 first 00\n") ==
        "c.txt, line 2: expected last, and the last byte, came \"first\". "
        "Write the last byte of the block there.");
}

TEST_CASE("capture: edited image data is told its new checksum") {
  CHECK(ErrorOf("read 9 crc CBF43926 last 39 :\n+ 313233343536373838\n") ==
        "c.txt, line 2: expected the checksum and the last byte of the bytes below, came others. "
        "Make the line \"read 9 crc BCF309B0 last 38 :\" if the bytes are right.");
}

TEST_CASE("capture: a member that the record does not have is refused, and so is a pointer") {
  const std::string expected = "expected a member of the settings record that is no pointer, came ";
  const std::string whatToDo = ". The members are listed in interface/scanner_settings.h.";
  CHECK(ErrorOf("host resolutoin = 300\n") ==
        "c.txt, line 2: " + expected + "\"resolutoin\"" + whatToDo);
  CHECK(ErrorOf("host deviceInterface = 0\n") ==
        "c.txt, line 2: " + expected + "\"deviceInterface\"" + whatToDo);
}

TEST_CASE("capture: a value of the record fits its member") {
  CHECK(ErrorOf("host resolution = 65536\n") ==
        "c.txt, line 2: expected a number from 0 to 65535, came \"65536\". Correct the value.");
  CHECK(ErrorOf("host brightness = 1.5\n") ==
        "c.txt, line 2: expected a number from -2147483648 to 2147483647, came \"1.5\". "
        "Correct the value.");
  CHECK(ErrorOf("host originX = x\n") ==
        "c.txt, line 2: expected a number such as 100 or 0.5, came \"x\". Correct the value.");
  CHECK(ErrorOf("module modelName = \"123456789\"\n") ==
        "c.txt, line 2: expected a text in quotes of at most 8 characters, "
        "came \"\"123456789\"\". Correct the value.");
  CHECK(ErrorOf("host colorMatrix = 1\n") ==
        "c.txt, line 2: expected a colon and 9 bytes, came \"1\". Correct the value.");
}

TEST_CASE("capture: an argument is a name and a number without a blank") {
  CHECK(ErrorOf("call PMSetFocus mode = 0\n") ==
        "c.txt, line 2: expected NAME=NUMBER, came \"mode\". "
        "Write both without a blank between them.");
}

TEST_CASE("capture: a return is that of the open call") {
  CHECK(ErrorOf("return PMReset result=1\n") ==
        "c.txt, line 2: expected a call in front of its return, came \"PMReset\". "
        "Add the call, or take the line away.");
  CHECK(ErrorOf("call PMFeed\nread 1 : 06\nreturn PMEject\n") ==
        "c.txt, line 4: expected the return of PMFeed, which line 2 calls, came \"PMEject\". "
        "Correct one of the two lines.");
}

TEST_CASE("capture: a call is made once the one before it has returned") {
  CHECK(ErrorOf("call PMFeed\ncall PMEject\n") ==
        "c.txt, line 3: expected the return of PMFeed, which line 2 calls, came a call. "
        "Add the return, or take one of the calls away.");
}

TEST_CASE("capture: a time is in seconds") {
  CHECK(ErrorOf("write 1 : 06 @1ms\n") ==
        "c.txt, line 2: expected a time in seconds with at most six decimals, such as @0.001234, "
        "came \"@1ms\". Correct the time, or take it away.");
}

TEST_CASE("capture: a text ends with a quote") {
  CHECK(ErrorOf("module modelName = \"QM\n") ==
        "c.txt, line 2: expected a text in quotes, came \"QM. Close the text with a quote.");
}

}  // namespace
