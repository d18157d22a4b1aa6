#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <span>
#include <string>
#include <vector>

namespace pmscan {

// The arguments behind the program's name, in UTF-8. Makes standard output and standard error
// UTF-8 as well.
std::vector<std::string> CommandLineArguments();

// Where the user's profiles are kept; relative when the system tells no folder for it.
std::filesystem::path ProfileFolder();

// The folder that this program lies in.
std::filesystem::path ProgramFolder();

// False when standard error goes into a file or a pipe.
bool IsErrorOutputTerminal();

// Columns of the terminal that standard error goes to; 80 where that is not known.
std::size_t ErrorOutputColumns();

// Writes the bytes as they are to standard output, which has been flushed. False when not all went
// there.
bool WriteToOutput(std::span<const char> bytes);

// Copies all of the stream to standard output, byte for byte. False when not all went there.
bool WriteStandardOutput(std::istream& stream);

// What the system's number of an error means, and the number: "Access denied (Windows error 5)",
// "Permission denied (error 13)"; of one that the system has no words for, the number.
std::string SystemWords(std::uint32_t error);

// From here on a text goes to standard output and standard error in one piece.
void JoinOutput();

// False when standard output has not taken all of the text, then or before.
bool FlushOutput();

// From here on a pipe that nobody reads any more makes a write fail and does not end the program.
void OutliveReaders();

// From here on the first Ctrl+C no longer ends the program but makes IsInterrupted true; the second
// one ends it at once. What comes within 0.3 seconds of the first is the same one.
void CatchInterrupt();
bool IsInterrupted();

// Waits, until the first Ctrl+C at most.
void PauseUnlessInterrupted(std::chrono::milliseconds pause);

// Ends the program whatever its threads do; the output is flushed before.
[[noreturn]] void EndProgram(int exitCode);

}  // namespace pmscan
