#include "platform/linux/symbol_order.h"

#include <string_view>

namespace rowvane::platform {
namespace {

// Characters of minor weight, in order.
constexpr std::u16string_view kMinorCharacters =
    u"\u0001\u0002\u0003\u0004\u0005\u0006\u0007\u0008\u000E\u000F\u0010\u0011\u0012\u0013\u0014\u0015"
    u"\u0016\u0017\u0018\u0019\u001A\u001B\u001C\u001D\u001E\u001F\u007F"
    u"'＇-－﹣−₋⁻‐֊‑‧⁃‒–︲—﹘︱―〜〰";
constexpr std::u16string_view kOtherSymbols =
    u" \u00A0\t\n\u000B\u000C\r!\"#$%&()*,./:;?@[\\]^_`{|}~¡¦¨¯´¸¿‖‗‘’‚‛“”„‟′‵‹›¢£¤¥€+<=>±«»×÷§©¬®°¶·…†‡•‰";
constexpr char16_t kToFullwidth = 0xFEE0;

bool is_variant_of_former(char16_t character) {
  return std::u16string_view(u"＇－﹣₋⁻‑︲﹘︱").find(character) != std::u16string_view::npos;
}

// The characters that most texts are made of.
bool is_plain(char16_t character) {
  const auto lower = static_cast<char16_t>(character | 0x20);
  return (lower >= u'a' && lower <= u'z') || (character >= u'0' && character <= u'9') || character == u' ';
}

void append_quoted(char16_t character, icu::UnicodeString& rules) {
  rules.append(u'\\').append(character);
}

}  // namespace

icu::UnicodeString symbol_rules() {
  icu::UnicodeString rules(u"&[before 1]\\\u0009");
  for (const char16_t character : kMinorCharacters) {
    rules.append(is_variant_of_former(character) ? u"<<<" : u"<");
    append_quoted(character, rules);
  }
  for (const char16_t character : kOtherSymbols) {
    rules.append(u'<');
    append_quoted(character, rules);
    if (character <= u' ' || character >= 0x7F) continue;
    rules.append(u"<<<");
    append_quoted(static_cast<char16_t>(character + kToFullwidth), rules);
  }
  return rules;
}

unsigned char minor_weight(char16_t character) {
  if (is_plain(character)) return 0;
  return static_cast<unsigned char>(kMinorCharacters.find(character) + 1);
}

}  // namespace rowvane::platform
