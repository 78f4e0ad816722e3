#include "platform/program.h"

#include <cstdio>
#include <string>
#include <vector>

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include "platform/windows/wide.h"

namespace {

// Has the console read what is written to it as UTF-8, for as long as the program runs.
class Utf8Console {
 public:
  Utf8Console() : former_(::GetConsoleOutputCP()) { ::SetConsoleOutputCP(CP_UTF8); }
  ~Utf8Console() { ::SetConsoleOutputCP(former_); }
  Utf8Console(const Utf8Console&) = delete;
  Utf8Console& operator=(const Utf8Console&) = delete;

 private:
  UINT former_;
};

}  // namespace

int wmain(int count, wchar_t** arguments) {
  ::_setmode(::_fileno(stdout), _O_BINARY);
  ::_setmode(::_fileno(stderr), _O_BINARY);
  const Utf8Console console;
  std::vector<std::string> texts;
  for (int i = 0; i < count; ++i) texts.push_back(rowvane::platform::to_utf8(arguments[i]));
  std::vector<const char*> pointers;
  for (const std::string& text : texts) pointers.push_back(text.c_str());
  return rowvane::platform::program_main(count, pointers.data());
}
