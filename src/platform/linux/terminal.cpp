#include "platform/terminal.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unicode/uchar.h>
#include <unistd.h>

#include "platform/terminal_columns.h"
#include "platform/utf8.h"

namespace rowvane::platform {
namespace {

constexpr char32_t kSoftHyphen = 0xAD;

// The vowels and final consonants of Hangul join the syllable before them.
bool is_joining_jamo(char32_t character) {
  return character >= 0x1160 && character <= 0x11FF;
}

int character_width(char32_t character) {
  if (character >= 0x20 && character < 0x7F) return 1;
  const auto code = static_cast<UChar32>(character);
  constexpr uint32_t kTakesNoColumn = U_GC_MN_MASK | U_GC_ME_MASK | U_GC_CF_MASK | U_GC_CC_MASK;
  if (character == kSoftHyphen) return 1;
  if ((U_GET_GC_MASK(code) & kTakesNoColumn) != 0 || is_joining_jamo(character)) return 0;
  const int width = u_getIntPropertyValue(code, UCHAR_EAST_ASIAN_WIDTH);
  return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

}  // namespace

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

int display_width(std::string_view text) {
  int width = 0;
  for (size_t position = 0; position < text.size();) width += character_width(next_utf8(text, position));
  return width;
}

}  // namespace rowvane::platform
