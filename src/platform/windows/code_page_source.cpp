#include "platform/code_page_source.h"

#include <windows.h>

#include "platform/code_page_table.h"
#include "platform/windows/code_page_numbers.h"

namespace rowvane::platform {
namespace {

constexpr unsigned kMostBytes = 2;
constexpr char16_t kEuro = 0x20AC;

// Windows gives bytes without a meaning a character for private use.
bool is_private(wchar_t character) {
  return character >= 0xE000 && character < 0xF900;
}

class WindowsSource : public CodePageSource {
 public:
  explicit WindowsSource(unsigned number) : number_(number), system_number_(system_code_page(number)) {}

  // Whether the page has one or two bytes for a character, and ASCII as all others do.
  bool is_usable() {
    CPINFO info;
    if (number_ <= CP_THREAD_ACP || ::GetCPInfo(system_number_, &info) == FALSE ||
        info.MaxCharSize > kMostBytes)
      return false;
    for (unsigned byte = ' '; byte < 0x7F; ++byte) {
      if (character_of(byte, 1) != byte) return false;
    }
    return true;
  }

  bool is_lead_byte(unsigned char byte) const override {
    return ::IsDBCSLeadByteEx(system_number_, byte) != FALSE;
  }

  char16_t character_of(unsigned code, int length) override {
    if (has_added_euro() && code == kEuroByteOf858) return kEuro;
    const char bytes[] = {static_cast<char>(length == 2 ? code >> 8 : code), static_cast<char>(code)};
    wchar_t characters[4];
    const int count =
        ::MultiByteToWideChar(system_number_, MB_ERR_INVALID_CHARS, bytes, length, characters, 4);
    return count == 1 && !is_private(characters[0]) ? static_cast<char16_t>(characters[0]) : kNoCharacter;
  }

  uint16_t bytes_of(char16_t character) override {
    return code_page_bytes(system_number_, WC_NO_BEST_FIT_CHARS, character).value_or(kNoBytes);
  }

 private:
  bool has_added_euro() const { return system_number_ != number_; }

  unsigned number_;
  unsigned system_number_;
};

}  // namespace

std::unique_ptr<CodePageSource> CodePageSource::open(unsigned number) {
  auto source = std::make_unique<WindowsSource>(number);
  if (!source->is_usable()) return nullptr;
  return source;
}

}  // namespace rowvane::platform
