// What the command line of the window program asks for.
//
// A switch is "-" or "/" with one of five words in any letter case; the first decides what is done. All other
// text names files to open, also text that begins with "-" or "/": a path may.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace rowvane {

enum class StartupAction {
  kRun,
  kRegisterServer,    // "RegServer"
  kUnregisterServer,  // "UnregServer"
  kUninstall,         // "Uninstall"
};

struct StartupCommand {
  StartupAction action = StartupAction::kRun;
  bool started_by_com = false;     // "Automation" or "Embedding"
  std::vector<std::string> files;  // to open, each of at most kMaxPathCharacters

  bool operator==(const StartupCommand&) const = default;
};

// TEXT is everything behind the program's name. What is left beside switches is one path: blanks before it
// are skipped, a double quote there is dropped, and the path ends at the next double quote.
StartupCommand parse_command_text(std::string_view text);

// ARGUMENTS as a shell hands them over: each that is no switch is a path of its own, taken as it is.
StartupCommand parse_arguments(std::span<const std::string> arguments);

}  // namespace rowvane
