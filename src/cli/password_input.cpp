#include "cli/password_input.h"

#include "cli/report.h"
#include "core/messages/file_error.h"
#include "platform/environment_variables.h"
#include "platform/file.h"
#include "platform/terminal.h"
#include "platform/utf8.h"

namespace rowvane::cli {
namespace {

constexpr uint64_t kMaxPasswordFile = 65'536;
std::string_view first_line(std::string_view text) {
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  return text.substr(0, text.find_first_of("\r\n"));
}

int ask(const std::string& prompt, Secret& password) {
  std::string line;
  const bool asked = platform::ask_hidden(prompt, line);
  password = Secret::take(line);
  return asked ? kDone : fail("a password can only be typed on a terminal");
}

int read_file(const std::string& path, Secret& password) {
  std::string content;
  const ErrorCode error =
      file_error(platform::read_whole_file(path, content, kMaxPasswordFile), ErrorCode::kFileOpen);
  password = Secret(first_line(content));
  wipe(content);
  return error == ErrorCode::kOk ? kDone : fail(error);
}

}  // namespace

int read_password(const PasswordPlace& place, Secret& password, Secret* repeated) {
  int status = kDone;
  if (place.file == "-") {
    status = ask(place.prompt, password);
    if (repeated != nullptr && status == kDone) status = ask("Once more: ", *repeated);
    return status;
  }
  if (!place.file.empty()) {
    status = read_file(place.file, password);
  } else {
    std::string value;
    platform::read_environment(place.variable, value);
    password = Secret::take(value);
  }
  if (repeated != nullptr) *repeated = Secret(password.view());
  return status;
}

}  // namespace rowvane::cli
