#include "text/rich_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <vector>

#include "core/database/binary_names.h"
#include "platform/ascii.h"
#include "platform/utf8.h"

namespace rowvane {
namespace {

constexpr size_t kMaxGroups = 10'000;  // one within the other; the text behind the limit is left out

// Groups whose text is no part of the document.
constexpr std::array<std::string_view, 22> kHiddenGroups = {
    "colortbl",  "comment",  "datastore", "fldinst", "fonttbl",    "footer",   "footerf", "footerl",
    "footerr",   "footnote", "generator", "header",  "headerf",    "headerl",  "headerr", "info",
    "listtable", "objdata",  "pict",      "rsidtbl", "stylesheet", "themedata"};

struct NamedText {
  std::string_view word;
  std::string_view text;
};
constexpr std::array<NamedText, 16> kTextWords = {{{"bullet", "\u2022"},
                                                   {"cell", "\t"},
                                                   {"emdash", "\u2014"},
                                                   {"emspace", "\u2003"},
                                                   {"endash", "\u2013"},
                                                   {"enspace", "\u2002"},
                                                   {"ldblquote", "\u201C"},
                                                   {"line", "\n"},
                                                   {"lquote", "\u2018"},
                                                   {"page", "\n"},
                                                   {"par", "\n"},
                                                   {"rdblquote", "\u201D"},
                                                   {"row", "\n"},
                                                   {"rquote", "\u2019"},
                                                   {"sect", "\n"},
                                                   {"tab", "\t"}}};

class RichTextReader {
 public:
  explicit RichTextReader(std::string_view rich) : rest_(rich) {}

  std::string run() {
    while (!rest_.empty()) {
      const char c = take();
      if (c == '{') {
        open_group();
      } else if (c == '}') {
        close_group();
      } else if (c == '\\') {
        read_control();
      } else if (c != '\r' && c != '\n') {
        put_byte(c);
      }
    }
    return repair_utf8(text_);
  }

 private:
  struct Group {
    bool hidden = false;
    int fallback = 1;  // characters that stand behind a Unicode character for readers without Unicode
  };

  char take() {
    const char c = rest_.front();
    rest_.remove_prefix(1);
    return c;
  }

  void open_group() {
    groups_.push_back(groups_.back());
    if (groups_.size() > kMaxGroups) rest_ = {};
  }

  void close_group() {
    if (groups_.size() > 1) groups_.pop_back();
    skipped_ = 0;
  }

  void put(std::string_view text) {
    if (skipped_ > 0) {
      --skipped_;
    } else if (!groups_.back().hidden) {
      flush_surrogate();
      text_ += text;
    }
  }

  // Bytes above 0x7F that are no UTF-8 are those of the code page; repair_utf8 reads them so at the end.
  void put_byte(char c) { put(std::string_view(&c, 1)); }

  void read_control() {
    if (rest_.empty()) return;
    if (ascii::is_letter(rest_.front())) return read_word();
    const char symbol = take();
    if (symbol == '\'') {
      read_hexadecimal_byte();
    } else if (symbol == '*') {
      groups_.back().hidden = true;
    } else if (symbol == '~') {
      put("\u00A0");
    } else if (symbol == '_') {
      put("-");
    } else if (symbol == '\r' || symbol == '\n') {
      put("\n");
    } else if (symbol == '\\' || symbol == '{' || symbol == '}') {
      put_byte(symbol);
    }
  }

  void read_hexadecimal_byte() {
    unsigned byte = 0;
    const std::string_view digits = rest_.substr(0, 2);
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
    rest_.remove_prefix(static_cast<size_t>(read.ptr - digits.data()));
    if (read.ec == std::errc()) {
      std::string character;
      append_character(byte, character);
      put(byte < 0x80 || byte >= 0xA0 ? character : repair_utf8(std::string(1, static_cast<char>(byte))));
    }
  }

  void read_word() {
    size_t end = 0;
    while (end < rest_.size() && ascii::is_letter(rest_[end])) ++end;
    const std::string_view word = rest_.substr(0, end);
    rest_.remove_prefix(end);
    int number = 0;
    const auto read = std::from_chars(rest_.data(), rest_.data() + rest_.size(), number);
    rest_.remove_prefix(static_cast<size_t>(read.ptr - rest_.data()));
    if (!rest_.empty() && rest_.front() == ' ') rest_.remove_prefix(1);
    apply(word, number);
  }

  void apply(std::string_view word, int number) {
    if (word == "u") return put_unicode(number);
    if (word == "uc") {
      groups_.back().fallback = std::clamp(number, 0, 100);
    } else if (word == "bin") {
      rest_.remove_prefix(std::min(rest_.size(), static_cast<size_t>(std::max(number, 0))));
    } else if (std::ranges::find(kHiddenGroups, word) != kHiddenGroups.end()) {
      groups_.back().hidden = true;
    } else {
      const auto found = std::ranges::find(kTextWords, word, &NamedText::word);
      if (found != kTextWords.end()) put(found->text);
    }
  }

  // NUMBER is a UTF-16 unit, perhaps written as a negative number.
  void put_unicode(int number) {
    const auto unit = static_cast<char32_t>(static_cast<uint16_t>(number));
    std::string character;
    if (unit >= 0xD800 && unit < 0xDC00) {
      skipped_ = 0;
      flush_surrogate();
      high_ = groups_.back().hidden ? 0 : unit;
    } else {
      const bool joins = high_ != 0 && unit >= 0xDC00 && unit < 0xE000;
      append_character(joins ? 0x1'0000 + ((high_ - 0xD800) << 10) + (unit - 0xDC00) : unit, character);
      if (joins) high_ = 0;
      skipped_ = 0;
      put(character);
    }
    skipped_ = groups_.back().fallback;
  }

  // A first half without its second one.
  void flush_surrogate() {
    if (high_ != 0) append_character(high_, text_);
    high_ = 0;
  }

  std::string_view rest_;
  std::string text_;
  std::vector<Group> groups_ = {Group()};
  int skipped_ = 0;    // characters that are still to be skipped
  char32_t high_ = 0;  // first half of a surrogate pair
};

}  // namespace

bool is_rich_text(std::string_view text) {
  return long_text_file_name(text) == kRichTextFileName;
}

std::string plain_text_of(std::string_view rich) {
  return RichTextReader(rich).run();
}

}  // namespace rowvane
