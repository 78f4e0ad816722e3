// Runs the terminal program within the test.
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "cli/command_line.h"

namespace rowvane::cli {

struct Outcome {
  int status;
  std::string out;
  std::string err;
};

// ARGUMENTS without the program's name.
inline Outcome run_rvb(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "rvb");
  std::vector<char*> pointers;
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  const int status = run_command_line(static_cast<int>(pointers.size()), pointers.data());
  std::string out = testing::internal::GetCapturedStdout();
  return {status, std::move(out), testing::internal::GetCapturedStderr()};
}

}  // namespace rowvane::cli
