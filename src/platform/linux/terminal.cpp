#include "platform/terminal.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include "platform/terminal_columns.h"

namespace rowvane::platform {

bool is_output_terminal() {
  return ::isatty(STDOUT_FILENO) == 1;
}
bool is_error_terminal() {
  return ::isatty(STDERR_FILENO) == 1;
}
bool is_input_terminal() {
  return ::isatty(STDIN_FILENO) == 1;
}

namespace {

// The terminal of the process, which does not show what is typed while this lives.
class QuietTerminal {
 public:
  QuietTerminal() : descriptor_(::open("/dev/tty", O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    if (descriptor_ < 0 || ::tcgetattr(descriptor_, &former_) != 0) return;
    termios quiet = former_;
    quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    quiet.c_lflag |= ICANON | ECHONL;
    is_quiet_ = ::tcsetattr(descriptor_, TCSAFLUSH, &quiet) == 0;
  }
  ~QuietTerminal() {
    if (is_quiet_) ::tcsetattr(descriptor_, TCSAFLUSH, &former_);
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  QuietTerminal(const QuietTerminal&) = delete;
  QuietTerminal& operator=(const QuietTerminal&) = delete;

  bool is_quiet() const { return is_quiet_; }
  bool show(std::string_view text) const {
    return ::write(descriptor_, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  }
  bool next(char& c) const { return ::read(descriptor_, &c, 1) == 1; }

 private:
  int descriptor_;
  termios former_{};
  bool is_quiet_ = false;
};

}  // namespace

bool ask_hidden(std::string_view prompt, std::string& line) {
  line.clear();
  line.reserve(kMaxHiddenLine);  // it must not move while it grows
  const QuietTerminal terminal;
  if (!terminal.is_quiet() || !terminal.show(prompt)) return false;
  for (char c = 0; terminal.next(c);) {
    if (c == '\n') return true;
    if (line.size() < kMaxHiddenLine) line += c;
  }
  return false;
}

std::optional<int> terminal_width() {
  if (!is_output_terminal()) return std::nullopt;
  if (const std::optional<int> columns = columns_from_environment()) return columns;
  struct winsize size {};
  if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return std::nullopt;
  return size.ws_col;
}

}  // namespace rowvane::platform
