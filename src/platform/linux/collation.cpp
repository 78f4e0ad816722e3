#include "platform/collation.h"

#include <map>
#include <mutex>
#include <utility>
#include <vector>

#include <unicode/locid.h>
#include <unicode/stringpiece.h>
#include <unicode/tblcoll.h>
#include <unicode/ucol.h>
#include <unicode/unistr.h>

#include "platform/linux/ascii_weights.h"
#include "platform/linux/environment_locale.h"
#include "platform/linux/symbol_order.h"
#include "platform/locale_name.h"

namespace rowvane::platform {
namespace {

static_assert(3 * kMostComparedBytes <= 0xFFFF);  // folding makes at most three characters of one

void set(icu::Collator& collator, UColAttribute attribute, UColAttributeValue value) {
  UErrorCode error = U_ZERO_ERROR;
  collator.setAttribute(attribute, value, error);
}

// The order of the language with the symbols where Windows has them; the language's own where that fails.
std::shared_ptr<icu::Collator> with_symbol_order(std::shared_ptr<icu::Collator> collator) {
  const auto* const of_language = dynamic_cast<const icu::RuleBasedCollator*>(collator.get());
  if (of_language == nullptr) return collator;
  UErrorCode error = U_ZERO_ERROR;
  icu::UnicodeString rules = of_language->getRules();
  rules.append(symbol_rules());
  auto combined = std::make_shared<icu::RuleBasedCollator>(rules, error);
  return U_SUCCESS(error) ? combined : collator;
}

std::shared_ptr<const icu::Collator> make_collator(const LocaleName& name) {
  UErrorCode error = U_ZERO_ERROR;
  const icu::Locale locale =
      name.language.empty() ? icu::Locale::getRoot() : icu::Locale(name.joined().c_str());
  std::shared_ptr<icu::Collator> collator(icu::Collator::createInstance(locale, error));
  if (U_FAILURE(error) || collator == nullptr) return nullptr;
  collator = with_symbol_order(std::move(collator));
  set(*collator, UCOL_NORMALIZATION_MODE, UCOL_ON);
  set(*collator, UCOL_ALTERNATE_HANDLING, UCOL_NON_IGNORABLE);
  set(*collator, UCOL_NUMERIC_COLLATION, UCOL_OFF);
  set(*collator, UCOL_CASE_FIRST, UCOL_OFF);
  collator->setStrength(icu::Collator::TERTIARY);
  // Some languages put their own script before the others; Windows leaves all in one order.
  const int32_t in_one_order = UCOL_REORDER_CODE_NONE;
  collator->setReorderCodes(&in_one_order, 1, error);
  return collator;
}

uint32_t fold_options_of(const LocaleName& name) {
  const bool is_turkic = name.language == "tr" || name.language == "az";
  return is_turkic ? U_FOLD_CASE_EXCLUDE_SPECIAL_I : U_FOLD_CASE_DEFAULT;
}

// What all orders of a language have in common.
class LanguageOrder {
 public:
  explicit LanguageOrder(const LocaleName& name)
      : collator_(make_collator(name)), fold_options_(fold_options_of(name)) {}

  const icu::Collator* collator() const { return collator_.get(); }  // null where ICU has no data at all
  uint32_t fold_options() const { return fold_options_; }
  // Of texts whose case is folded.
  std::span<const uint8_t> ascii_weights() const {
    std::call_once(weighed_, [this] {
      if (collator_ != nullptr) ascii_weights_ = folded_ascii_weights(*collator_, fold_options_);
    });
    return ascii_weights_;
  }

 private:
  std::shared_ptr<const icu::Collator> collator_;
  uint32_t fold_options_;
  mutable std::once_flag weighed_;
  mutable std::vector<uint8_t> ascii_weights_;
};

// Made on first use and kept: for Chinese, Japanese and Korean that takes a tenth of a second.
std::shared_ptr<const LanguageOrder> shared_order(const LocaleName& name) {
  static std::mutex mutex;
  static std::map<std::string, std::shared_ptr<const LanguageOrder>> by_locale;
  const std::lock_guard lock(mutex);
  std::shared_ptr<const LanguageOrder>& order = by_locale[name.joined()];
  if (order == nullptr) order = std::make_shared<LanguageOrder>(name);
  return order;
}

// What a text is compared by: first its letters, then the characters of minor weight.
struct Parts {
  icu::UnicodeString letters;
  std::string minor;  // for each its place among the letters, at most 3 * kMostComparedBytes, and its weight
};

// The earlier character comes first.
void append_minor(int32_t place, unsigned char weight, std::string& minor) {
  minor += static_cast<char>(place >> 8);
  minor += static_cast<char>(place & 0xFF);
  minor += static_cast<char>(weight);
}

void take_out_minor(Parts& parts) {
  const icu::UnicodeString all = std::move(parts.letters);
  parts.letters.remove();
  int32_t start = 0;
  for (int32_t i = 0; i < all.length(); ++i) {
    const unsigned char weight = minor_weight(all[i]);
    if (weight == 0) continue;
    parts.letters.append(all, start, i - start);
    append_minor(parts.letters.length(), weight, parts.minor);
    start = i + 1;
  }
  parts.letters.append(all, start, all.length() - start);
}

class IcuCollation : public Collation {
 public:
  IcuCollation(const LocaleName& name, CollationOptions options)
      : order_(shared_order(name)), collator_(order_->collator()), options_(options) {}

  std::span<const uint8_t> ascii_weights() const override {
    if (options_.case_sensitive || options_.ignore_punctuation) return {};
    return order_->ascii_weights();
  }

 private:
  int compare_cut(std::string_view a, std::string_view b) const override {
    const Parts first = parts_of(a);
    const Parts second = parts_of(b);
    const int order = compare_letters(first.letters, second.letters);
    return order != 0 ? order : first.minor.compare(second.minor);
  }

  int compare_letters(const icu::UnicodeString& a, const icu::UnicodeString& b) const {
    if (collator_ == nullptr) return a.compareCodePointOrder(b);
    UErrorCode error = U_ZERO_ERROR;
    return collator_->compare(a, b, error);
  }

  void append_key_of_cut(std::string_view text, std::string& key) const override {
    const Parts parts = parts_of(text);
    if (collator_ == nullptr) {
      parts.letters.toUTF8String(key);
      key += '\0';
    } else {
      append_letters_key(parts.letters, key);
    }
    key += parts.minor;
  }

  // The collator ends a key with a zero byte and has no other in it.
  void append_letters_key(const icu::UnicodeString& letters, std::string& key) const {
    const size_t start = key.size();
    const auto place = [&] { return reinterpret_cast<uint8_t*>(key.data() + start); };
    const int32_t guess = 4 * letters.length() + 16;
    key.resize(start + static_cast<size_t>(guess));
    const int32_t length = collator_->getSortKey(letters, place(), guess);
    key.resize(start + static_cast<size_t>(length));
    if (length > guess) collator_->getSortKey(letters, place(), length);
  }

  // Folding the case, unlike a collator that leaves it out, keeps the width and the kana.
  Parts parts_of(std::string_view text) const {
    Parts parts;
    parts.letters =
        icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
    if (!options_.case_sensitive) parts.letters.foldCase(order_->fold_options());
    if (options_.ignore_punctuation) take_out_minor(parts);
    return parts;
  }

  std::shared_ptr<const LanguageOrder> order_;
  const icu::Collator* collator_;
  CollationOptions options_;
};

}  // namespace

std::unique_ptr<Collation> Collation::open_for_user(CollationOptions options) {
  return open(locale_from_environment("LC_COLLATE"), options);
}

std::unique_ptr<Collation> Collation::open(const std::string& locale, CollationOptions options) {
  return std::make_unique<IcuCollation>(parse_locale_name(locale), options);
}

}  // namespace rowvane::platform
