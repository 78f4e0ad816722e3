// Running small programs of the system.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace rowvane::platform {

// Runs ARGUMENTS, the first being a program that PATH finds, in the C locale without input, and answers what
// it wrote to its standard output, at most 1 MiB. Nothing when it can't be started, fails or takes longer
// than TIMEOUT; it is ended then.
std::optional<std::string> run_program(const std::vector<std::string>& arguments,
                                       std::chrono::milliseconds timeout);

// Starts ARGUMENTS and leaves it alone. False when it can't be started.
bool start_program(const std::vector<std::string>& arguments);

}  // namespace rowvane::platform
