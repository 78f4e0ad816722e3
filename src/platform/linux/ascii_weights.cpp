#include "platform/linux/ascii_weights.h"

#include <algorithm>
#include <memory>
#include <numeric>

#include <unicode/ucol.h>
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

// Whether COLLATOR looks at each of CHARACTERS alone and as one, whatever stands beside it among them.
bool count_singly(const icu::Collator& collator, const std::vector<icu::UnicodeString>& characters) {
  icu::UnicodeSet contractions;
  icu::UnicodeSet expansions;
  UErrorCode error = U_ZERO_ERROR;
  ucol_getContractionsAndExpansions(collator.toUCollator(), contractions.toUSet(), expansions.toUSet(),
                                    /*addPrefixes=*/true, &error);
  if (U_FAILURE(error)) return false;
  icu::UnicodeSet all;
  for (const icu::UnicodeString& character : characters) all.add(character);
  if (all.containsSome(expansions)) return false;
  for (icu::UnicodeSetIterator contraction(contractions); contraction.next();) {
    if (all.span(contraction.getString(), 0, USET_SPAN_CONTAINED) == contraction.getString().length())
      return false;
  }
  return true;
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
