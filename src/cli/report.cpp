#include "cli/report.h"

#include <cstdio>

namespace rowvane::cli {
namespace {

std::string one_line(std::string_view text) {
  std::string line;
  for (const char c : text) {
    if (c != '\n') {
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

std::string numbered(const Notice& notice) {
  const auto* id = std::get_if<MessageId>(&notice);
  const std::string label = id != nullptr
                                ? "message " + std::to_string(static_cast<int>(*id))
                                : "error " + std::to_string(static_cast<int>(std::get<ErrorCode>(notice)));
  return label + ": " + notice_text(notice);
}

}  // namespace

int fail(std::string_view text) {
  print(text);
  return kFailed;
}

int fail(ErrorCode error) {
  return fail(numbered(error));
}

int fail(MessageId message) {
  return fail(numbered(message));
}

int fail(Status status) {
  return status == Status::kCancelled
             ? fail("status 'r': cancelled")
             : fail("status 21: the file can't be opened or the table can't be created");
}

int done(ErrorCode error) {
  return error == ErrorCode::kOk ? kDone : fail(error);
}

int fail_usage(std::string_view text) {
  print(text);
  return kWrongArguments;
}

void warn(std::string_view text) {
  print("warning " + std::string(text));
}

void warn(const Notice& notice) {
  warn(numbered(notice));
}

void warn(const std::vector<Notice>& notices) {
  for (const Notice& notice : notices) warn(notice);
}

}  // namespace rowvane::cli
