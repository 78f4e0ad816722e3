#include "platform/linux/ascii_weights.h"

#include <algorithm>
#include <memory>
#include <numeric>

#include <unicode/coleitr.h>
#include <unicode/tblcoll.h>
#include <unicode/uniset.h>
#include <unicode/unistr.h>
#include <unicode/usetiter.h>

namespace rowvane::platform {
namespace {

constexpr size_t kAsciiCharacters = 128;

// The ASCII characters by their numbers, folded; empty where one becomes several.
std::vector<icu::UnicodeString> folded_characters(uint32_t fold_options) {
  std::vector<icu::UnicodeString> characters;
  for (size_t i = 0; i < kAsciiCharacters; ++i) {
    icu::UnicodeString& character = characters.emplace_back(static_cast<char16_t>(i));
    if (character.foldCase(fold_options).length() != 1) return {};
  }
  return characters;
}

// Whether COLLATOR takes several of CHARACTERS together. The order that all languages start from does so with
// none of ASCII, which leaves what a language changes in it.
bool takes_together(const icu::Collator& collator, const std::vector<icu::UnicodeString>& characters) {
  UErrorCode error = U_ZERO_ERROR;
  const std::unique_ptr<icu::UnicodeSet> changed(collator.getTailoredSet(error));
  if (U_FAILURE(error)) return true;
  icu::UnicodeSet all;
  for (const icu::UnicodeString& character : characters) all.add(character);
  for (icu::UnicodeSetIterator range(*changed); range.nextRange();) {
    if (!range.isString()) continue;
    const icu::UnicodeString& text = range.getString();
    if (all.span(text, 0, USET_SPAN_CONTAINED) == text.length()) return true;
  }
  return false;
}

// Whether COLLATOR takes CHARACTER for several.
bool takes_apart(const icu::RuleBasedCollator& collator, const icu::UnicodeString& character) {
  constexpr int32_t kContinuation = 0xC0;  // of a single one that is long
  const std::unique_ptr<icu::CollationElementIterator> elements(
      collator.createCollationElementIterator(character));
  UErrorCode error = U_ZERO_ERROR;
  elements->next(error);
  const int32_t second = elements->next(error);
  if (second == icu::CollationElementIterator::NULLORDER) return false;
  return U_FAILURE(error) || (second & kContinuation) != kContinuation ||
         elements->next(error) != icu::CollationElementIterator::NULLORDER;
}

bool count_singly(const icu::Collator& collator, const std::vector<icu::UnicodeString>& characters) {
  const auto* const rules = dynamic_cast<const icu::RuleBasedCollator*>(&collator);
  return rules != nullptr && !takes_together(collator, characters) &&
         std::ranges::none_of(characters, [&](const auto& one) { return takes_apart(*rules, one); });
}

UCollationResult compare(const icu::Collator& collator, const icu::UnicodeString& a,
                         const icu::UnicodeString& b) {
  UErrorCode error = U_ZERO_ERROR;
  return collator.compare(a, b, error);
}

class Weighing {
 public:
  Weighing(const icu::Collator& collator, std::vector<icu::UnicodeString> characters)
      : collator_(collator), letters_only_(collator.clone()), characters_(std::move(characters)) {
    letters_only_->setStrength(icu::Collator::PRIMARY);
  }

  // Empty where two characters differ in less than their letters.
  std::vector<uint8_t> run() const {
    std::vector<size_t> order(characters_.size());
    std::iota(order.begin(), order.end(), size_t{0});
    std::ranges::sort(order, [&](size_t a, size_t b) {
      return compare(*letters_only_, characters_[a], characters_[b]) == UCOL_LESS;
    });
    std::vector<uint8_t> weights(characters_.size());
    icu::UnicodeString before;  // which characters that do not count are equal to
    uint8_t weight = 0;
    for (const size_t i : order) {
      const bool differs = compare(*letters_only_, before, characters_[i]) != UCOL_EQUAL;
      if (!differs && compare(collator_, before, characters_[i]) != UCOL_EQUAL) return {};
      weights[i] = differs ? ++weight : weight;
      before = characters_[i];
    }
    return weights;
  }

 private:
  const icu::Collator& collator_;
  std::unique_ptr<icu::Collator> letters_only_;
  std::vector<icu::UnicodeString> characters_;
};

}  // namespace

std::vector<uint8_t> folded_ascii_weights(const icu::Collator& collator, uint32_t fold_options) {
  std::vector<icu::UnicodeString> characters = folded_characters(fold_options);
  if (characters.empty() || !count_singly(collator, characters)) return {};
  return Weighing(collator, std::move(characters)).run();
}

}  // namespace rowvane::platform
