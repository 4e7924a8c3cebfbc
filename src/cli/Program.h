#pragma once

#include <string>
#include <vector>

namespace velmor::cli {

// The program without its main: reads the command line (without the program's name, in the encoding
// of parseCommandLine), runs the command and returns the exit code. No exception leaves it.
int runProgram(const std::vector<std::string>& arguments);

}  // namespace velmor::cli
