#include "cli/terminal_questions.h"

#include <cstdio>
#include <iostream>

#include "platform/terminal.h"

namespace rowvane::cli {

bool TerminalQuestions::ask(const std::string& question) {
  if (yes_) return true;
  if (!platform::is_input_terminal() || !platform::is_error_terminal()) return false;
  std::fprintf(stderr, "%s [y/N] ", question.c_str());
  std::fflush(stderr);
  std::string answer;
  return std::getline(std::cin, answer) && !answer.empty() && (answer[0] == 'y' || answer[0] == 'Y');
}

}  // namespace rowvane::cli
