#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace rvf::test {

struct ProgramResult {
  int status = 0;  // exit status 0 to 255, or the negative number of the signal that ended it
  std::string out, err;
};

/// Runs a program to its end in the folder `workingFolder`, with an empty standard input.
/// `arguments` starts with the path of the program, absolute or relative to that folder. A program
/// that has not ended after `timeoutSeconds` is killed, which gives the status -9. A program that
/// cannot be started has the status 127, as in a shell.
ProgramResult runProgram(std::vector<std::string> arguments,
                         const std::filesystem::path& workingFolder, int timeoutSeconds = 60);

}  // namespace rvf::test
