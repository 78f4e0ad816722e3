#include <array>
#include <string>

#include <windows.h>

#include "platform/terminal.h"

namespace rowvane::platform {
namespace {

// A handle of the console, whatever the standard streams are.
class ConsoleHandle {
 public:
  explicit ConsoleHandle(const wchar_t* name)
      : handle_(CreateFileW(name, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                            OPEN_EXISTING, 0, nullptr)) {}
  ~ConsoleHandle() {
    if (is_open()) CloseHandle(handle_);
  }
  ConsoleHandle(const ConsoleHandle&) = delete;
  ConsoleHandle& operator=(const ConsoleHandle&) = delete;

  bool is_open() const { return handle_ != INVALID_HANDLE_VALUE; }
  HANDLE get() const { return handle_; }

 private:
  HANDLE handle_;
};

// Input that is not shown while this lives.
class QuietInput {
 public:
  explicit QuietInput(HANDLE input) : input_(input) {
    is_quiet_ = GetConsoleMode(input_, &former_) != 0 &&
                SetConsoleMode(input_, (former_ | ENABLE_LINE_INPUT | ENABLE_PROCESSED_INPUT) &
                                           ~static_cast<DWORD>(ENABLE_ECHO_INPUT)) != 0;
  }
  ~QuietInput() {
    if (is_quiet_) SetConsoleMode(input_, former_);
  }
  QuietInput(const QuietInput&) = delete;
  QuietInput& operator=(const QuietInput&) = delete;

  bool is_quiet() const { return is_quiet_; }

 private:
  HANDLE input_;
  DWORD former_ = 0;
  bool is_quiet_ = false;
};

bool show(HANDLE output, std::string_view text) {
  std::wstring wide(text.size(), L'\0');
  const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), wide.data(),
                                         static_cast<int>(wide.size()));
  DWORD written = 0;
  return WriteConsoleW(output, wide.data(), static_cast<DWORD>(length), &written, nullptr) != 0;
}

// One line, its end included.
struct Line {
  std::array<wchar_t, kMaxHiddenLine> text{};
  DWORD length = 0;
  ~Line() { SecureZeroMemory(text.data(), sizeof text); }
};

}  // namespace

bool ask_hidden(std::string_view prompt, std::string& line) {
  line.clear();
  const ConsoleHandle input(L"CONIN$");
  const ConsoleHandle output(L"CONOUT$");
  if (!input.is_open() || !output.is_open()) return false;
  const QuietInput quiet(input.get());
  if (!quiet.is_quiet() || !show(output.get(), prompt)) return false;
  Line typed;
  const BOOL done = ReadConsoleW(input.get(), typed.text.data(), static_cast<DWORD>(typed.text.size()),
                                 &typed.length, nullptr);
  show(output.get(), "\r\n");
  if (done == 0 || typed.length == 0) return false;
  while (typed.length > 0 &&
         (typed.text[typed.length - 1] == L'\n' || typed.text[typed.length - 1] == L'\r')) {
    --typed.length;
  }
  const auto count = static_cast<int>(typed.length);
  if (count == 0) return true;
  line.resize(3 * static_cast<size_t>(count));
  const int bytes = WideCharToMultiByte(CP_UTF8, 0, typed.text.data(), count, line.data(),
                                        static_cast<int>(line.size()), nullptr, nullptr);
  line.resize(static_cast<size_t>(bytes));
  return true;
}

}  // namespace rowvane::platform
