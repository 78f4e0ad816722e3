#include "platform/code_pages.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "platform/best_fit.h"
#include "platform/code_page_table.h"
#include "platform/default_code_pages.h"
#include "platform/utf8.h"

namespace rowvane::platform {
namespace {

class TableCodePage : public CodePage {
 public:
  explicit TableCodePage(std::shared_ptr<const CodePageTable> table) : table_(std::move(table)) {}

  void to_utf8(std::string_view text, std::string& out) override {
    size_t position = 0;
    while (position < text.size()) {
      const size_t run = ascii_run(text, position);
      out.append(text, position, run);
      position += run;
      position += table_->is_double_byte ? convert_pair(text.substr(position), out)
                                         : convert_singles(text.substr(position), out);
    }
  }

  bool from_utf8(std::string_view text, std::string& out) override {
    bool exact = true;
    size_t position = 0;
    while (position < text.size()) {
      const size_t run = ascii_run(text, position);
      out.append(text, position, run);
      position += run;
      exact &= convert_characters(text, position, out);
    }
    return exact;
  }

  int max_character_bytes() const override { return table_->is_double_byte ? 2 : 1; }
  bool is_lead_byte(unsigned char byte) const override { return table_->is_lead_byte[byte]; }

 private:
  static constexpr size_t kChunk = 256;

  // Converts some of the bytes at the start of TEXT, whose characters all have one byte; answers how many.
  size_t convert_singles(std::string_view text, std::string& out) const {
    std::array<char, 4 * kChunk> chunk;
    const size_t count = std::min(text.size(), kChunk);
    size_t length = 0;
    for (size_t i = 0; i < count; ++i) {
      const CodePageTable::Utf8& utf8 = table_->single_bytes[static_cast<unsigned char>(text[i])];
      std::memcpy(chunk.data() + length, utf8.bytes.data(), utf8.bytes.size());
      length += utf8.length;
    }
    out.append(chunk.data(), length);
    return count;
  }

  // Converts the character at the start of TEXT; answers the number of its bytes.
  size_t convert_pair(std::string_view text, std::string& out) const {
    if (text.empty()) return 0;
    const auto first = static_cast<unsigned char>(text[0]);
    if (!table_->is_lead_byte[first] || text.size() == 1) {
      append_character(table_->characters[first], out);
      return 1;
    }
    const auto second = static_cast<unsigned char>(text[1]);
    const char16_t character = table_->characters[static_cast<size_t>(first << 8 | second)];
    append_character(character, out);
    // An ASCII byte behind a stray lead byte is more likely a separator than half a character.
    return character == kNoCharacter && second < 0x80 ? 1 : 2;
  }

  // Appends some of the characters from POSITION on and moves POSITION behind them. False when one of them
  // had no exact counterpart.
  bool convert_characters(std::string_view text, size_t& position, std::string& out) const {
    std::array<char, kChunk> chunk;
    size_t length = 0;
    bool exact = true;
    while (length + 2 <= kChunk && position < text.size()) {
      const char32_t character = next_character(text, position);
      uint16_t bytes = character < 0x80 ? static_cast<uint16_t>(character) : table_->bytes_of(character);
      if (bytes == kNoBytes && character != 0) {
        bytes = best_fit(*table_, character);
        exact = false;
      }
      if (bytes > 0xFF) chunk[length++] = static_cast<char>(bytes >> 8);
      chunk[length++] = static_cast<char>(bytes & 0xFF);
    }
    out.append(chunk.data(), length);
    return exact;
  }

  std::shared_ptr<const CodePageTable> table_;
};

unsigned resolve_default(unsigned number) {
  if (number > kDefaultOemCodePage) return number;
  const DefaultCodePages pages = user_code_pages();
  return number == kDefaultAnsiCodePage ? pages.ansi : pages.oem;
}

}  // namespace

std::unique_ptr<CodePage> CodePage::open(unsigned number) {
  std::shared_ptr<const CodePageTable> table = code_page_table(resolve_default(number));
  if (table == nullptr) return nullptr;
  return std::make_unique<TableCodePage>(std::move(table));
}

}  // namespace rowvane::platform
