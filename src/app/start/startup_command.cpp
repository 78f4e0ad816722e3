#include "app/start/startup_command.h"

#include <algorithm>
#include <array>
#include <optional>

#include "app/profile/recent_files.h"

namespace rowvane {
namespace {

constexpr std::string_view kArgumentBlanks = " \t";

struct Switch {
  std::string_view word;  // lower case
  StartupAction action;
  bool started_by_com;
};

constexpr std::array kSwitches = {
    Switch{"unregserver", StartupAction::kUnregisterServer, false},
    Switch{"regserver", StartupAction::kRegisterServer, false},
    Switch{"uninstall", StartupAction::kUninstall, false},
    Switch{"automation", StartupAction::kRun, true},
    Switch{"embedding", StartupAction::kRun, true},
};

bool same_word(std::string_view text, std::string_view lower) {
  return std::ranges::equal(text, lower, [](char a, char b) {
    return (a >= 'A' && a <= 'Z' ? static_cast<char>(a - 'A' + 'a') : a) == b;
  });
}

// The switch that TOKEN is, or null.
const Switch* find_switch(std::string_view token) {
  if (!token.starts_with('-') && !token.starts_with('/')) return nullptr;
  const auto* found =
      std::ranges::find_if(kSwitches, [&](const Switch& s) { return same_word(token.substr(1), s.word); });
  return found != kSwitches.end() ? found : nullptr;
}

// Takes the first switch only.
class Decision {
 public:
  void take(const Switch& given, StartupCommand& command) {
    if (decided_) return;
    decided_ = true;
    command.action = given.action;
    command.started_by_com = given.started_by_com;
  }

 private:
  bool decided_ = false;
};

// Blanks before the path and behind an unquoted one are none of it.
std::string path_in(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(kArgumentBlanks), text.size()));
  if (text.starts_with('"')) {
    text.remove_prefix(1);
    return cut_path(text.substr(0, text.find('"')));
  }
  text = text.substr(0, text.find('"'));
  const size_t last = text.find_last_not_of(kArgumentBlanks);
  return cut_path(text.substr(0, last == std::string_view::npos ? 0 : last + 1));
}

// The end of the token that begins at START; blanks between double quotes are part of it.
size_t token_end(std::string_view text, size_t start) {
  bool quoted = false;
  size_t end = start;
  for (; end < text.size(); ++end) {
    if (text[end] == '"') quoted = !quoted;
    if (!quoted && kArgumentBlanks.find(text[end]) != std::string_view::npos) break;
  }
  return end;
}

}  // namespace

StartupCommand parse_command_text(std::string_view text) {
  StartupCommand command;
  Decision decision;
  std::string rest;  // without the switches
  for (size_t position = 0; position < text.size();) {
    const size_t start = std::min(text.find_first_not_of(kArgumentBlanks, position), text.size());
    const size_t end = token_end(text, start);
    if (const Switch* found = find_switch(text.substr(start, end - start))) {
      decision.take(*found, command);
    } else {
      rest += text.substr(position, end - position);
    }
    position = end;
  }
  std::string path = path_in(rest);
  if (!path.empty()) command.files.push_back(std::move(path));
  return command;
}

StartupCommand parse_arguments(std::span<const std::string> arguments) {
  StartupCommand command;
  Decision decision;
  for (const std::string& argument : arguments) {
    if (const Switch* found = find_switch(argument)) {
      decision.take(*found, command);
    } else if (!argument.empty()) {
      command.files.push_back(cut_path(argument));
    }
  }
  return command;
}

}  // namespace rowvane
