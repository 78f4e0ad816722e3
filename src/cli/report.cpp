#include "cli/report.h"

#include <cstdio>

namespace rowvane::cli {
namespace {

std::string one_line(std::string_view text) {
  std::string line;
  for (const char c : text) {
    const bool is_blank = c == '\n' || (c == ' ' && line.empty());
    if (!is_blank) {
      line += c;
    } else if (!line.empty() && line.back() != ' ') {
      line += ' ';
    }
  }
  while (!line.empty() && line.back() == ' ') line.pop_back();
  return line;
}

void print(std::string_view text) {
  const std::string line = "rvb: " + one_line(text) + "\n";
  std::fflush(stdout);
  std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace

int fail(const UserText& text) {
  print(text.numbered_text());
  return kFailed;
}

int fail_usage(std::string_view text) {
  print(text);
  return kWrongArguments;
}

void warn(const UserText& text) {
  print("warning " + text.numbered_text());
}

int accept(const Check& check, Questions& questions, std::string_view not_done) {
  if (!check.passes()) return fail(check.refusal);
  if (!check.question.empty() && !questions.ask(check.question.text()))
    return fail(std::string(not_done) + ": " + check.question.text());
  if (!check.notice.empty()) warn(check.notice);
  return kDone;
}

int report(const Outcome& outcome) {
  if (outcome.cancelled) return fail("status 'r': cancelled");
  if (!outcome.failure.empty()) return fail(outcome.failure);
  for (const UserText& notice : outcome.notices) warn(notice);
  return kDone;
}

}  // namespace rowvane::cli
