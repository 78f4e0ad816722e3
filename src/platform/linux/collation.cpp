#include "platform/collation.h"

#include <algorithm>
#include <utility>

#include <unicode/tblcoll.h>
#include <unicode/unistr.h>

#include "platform/linux/environment_locale.h"
#include "platform/linux/symbol_order.h"
#include "platform/locale_name.h"

namespace rowvane::platform {
namespace {

icu::UnicodeString to_utf16(std::string_view text) {
  return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
}

// The order of a language with the symbols in the order of Windows. Width and kana count at the same level as
// letter case, so that level is always compared; where case does not count the texts are folded before.
std::unique_ptr<icu::Collator> make_collator(const std::string& locale) {
  UErrorCode error = U_ZERO_ERROR;
  const std::unique_ptr<icu::Collator> of_language(
      icu::Collator::createInstance(icu::Locale(locale.c_str()), error));
  if (U_FAILURE(error)) return nullptr;
  icu::UnicodeString rules;
  if (const auto* const table = dynamic_cast<icu::RuleBasedCollator*>(of_language.get()))
    rules = table->getRules();
  auto collator = std::make_unique<icu::RuleBasedCollator>(rules + symbol_rules(), error);
  collator->setAttribute(UCOL_NORMALIZATION_MODE, UCOL_ON, error);
  collator->setStrength(icu::Collator::TERTIARY);
  if (U_FAILURE(error)) return nullptr;
  return collator;
}

// TEXT taken apart for a comparison that leaves the minor characters to the end.
struct SplitText {
  icu::UnicodeString rest;
  // The place and the weight of each minor character; memcmp of two is their order.
  std::string minors;
};

SplitText split(const icu::UnicodeString& text) {
  SplitText result;
  for (int32_t i = 0; i < text.length(); ++i) {
    const unsigned char weight = minor_weight(text[i]);
    if (weight == 0) {
      result.rest.append(text[i]);
      continue;
    }
    const auto place = static_cast<uint32_t>(result.rest.length());
    for (const int shift : {16, 8, 0}) result.minors += static_cast<char>(place >> shift);
    result.minors += static_cast<char>(weight);
  }
  return result;
}

class IcuCollation : public Collation {
 public:
  IcuCollation(std::unique_ptr<icu::Collator> collator, CollationOptions options)
      : collator_(std::move(collator)), options_(options) {}

 private:
  int compare_cut(std::string_view a, std::string_view b) const override {
    const icu::UnicodeString first = prepared(a);
    const icu::UnicodeString second = prepared(b);
    UErrorCode error = U_ZERO_ERROR;
    if (!options_.ignore_punctuation) return collator_->compare(first, second, error);
    const SplitText first_parts = split(first);
    const SplitText second_parts = split(second);
    const int result = collator_->compare(first_parts.rest, second_parts.rest, error);
    return result != 0 ? result : first_parts.minors.compare(second_parts.minors);
  }

  void append_key_of_cut(std::string_view text, std::string& key) const override {
    const icu::UnicodeString wide = prepared(text);
    if (!options_.ignore_punctuation) {
      append_sort_key(wide, key);
      return;
    }
    // The collator's key ends with a zero and has none before it.
    const SplitText parts = split(wide);
    append_sort_key(parts.rest, key);
    key += parts.minors;
  }

  icu::UnicodeString prepared(std::string_view text) const {
    icu::UnicodeString wide = to_utf16(text);
    if (!options_.case_sensitive) wide.foldCase();
    return wide;
  }

  void append_sort_key(const icu::UnicodeString& text, std::string& key) const {
    constexpr size_t kUsualLength = 64;
    const size_t start = key.size();
    key.resize(start + kUsualLength);
    const auto room = [&] { return static_cast<int32_t>(key.size() - start); };
    const auto write = [&] {
      return collator_->getSortKey(text, reinterpret_cast<uint8_t*>(key.data() + start), room());
    };
    int32_t length = write();
    if (length > room()) {
      key.resize(start + static_cast<size_t>(length));
      length = write();
    }
    key.resize(start + static_cast<size_t>(std::max(length, 0)));
  }

  std::unique_ptr<icu::Collator> collator_;
  CollationOptions options_;
};

}  // namespace

std::unique_ptr<Collation> Collation::open_for_user(CollationOptions options) {
  return open(locale_from_environment("LC_COLLATE"), options);
}

std::unique_ptr<Collation> Collation::open(const std::string& locale, CollationOptions options) {
  std::unique_ptr<icu::Collator> collator = make_collator(parse_locale_name(locale).joined());
  if (collator == nullptr) collator = make_collator("");
  return std::make_unique<IcuCollation>(std::move(collator), options);
}

}  // namespace rowvane::platform
