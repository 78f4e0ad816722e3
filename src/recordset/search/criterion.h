// What a field's values must satisfy to be found.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/database/database.h"

namespace rowvane {

// The letters stand in stored criteria.
enum class CriterionKind : char {
  kFormula = 'a',  // a formula is true for the record
  kRegEx = 'b',
  kStartsWith = 'c',
  kEqual = 'd',
  kNotEqual = 'e',
  kGreaterThan = 'f',
  kLessThan = 'g',
  kBetween = 'h',  // two values, both ends included
  kAnd = 'i',      // every one of several words
  kOr = 'j',       // any one of several words
  kIsEmpty = 'k',
  kSimilar = 'l',
  kFlag = 'm',  // the record carries a flag
};

struct Criterion {
  CriterionKind kind = CriterionKind::kRegEx;
  // UTF-8, at most kMaxBufferBytes. A single blank for kIsEmpty; for kFlag the 1-based number of the record
  // flag type in decimal digits, where a number that no type has means any flag.
  std::string text;

  bool operator==(const Criterion&) const = default;
};

Criterion is_empty_criterion();
Criterion flag_criterion(int number);
// The number of a flag criterion; 0 when its text is none.
int flag_number(const Criterion& criterion);

std::optional<CriterionKind> criterion_kind(char letter);
inline char criterion_letter(CriterionKind kind) {
  return static_cast<char>(kind);
}

// ---- the stored form: the kind's letter, ":" and the text

std::string stored_criterion(const Criterion& criterion);
// Reads what stored_criterion wrote, up to the first zero byte. Nothing when it is none: an unknown letter,
// a missing ":", a text of more than kMaxBufferBytes or a flag that is no number.
std::optional<Criterion> parse_criterion(std::string_view stored);

// TEXT as it was entered, cut to kMaxBufferBytes.
TextEntry read_criterion_entry(std::string_view text);

// The words of kBetween, kAnd and kOr: what stands between blanks. Views of TEXT.
std::vector<std::string_view> criterion_words(std::string_view text);

// ---- how criteria are shown

// The items of the list of kinds, in its order; entry i is that of kind 'b' + i.
inline constexpr size_t kListedKinds = 11;
std::span<const std::string_view, kListedKinds> criterion_list();
// The place of KIND in the list; nothing for kFormula and kFlag, which are no items.
std::optional<size_t> criterion_list_index(CriterionKind kind);
CriterionKind listed_kind(size_t index);

// The plain-language name: "Regular Expression" to "Between"; empty for the kinds that have none.
std::string_view criterion_kind_name(CriterionKind kind);

// What stands beside the field's name in the heads of tables and forms: the criterion's kind and text. FLAGS
// are the record flag types of the database. Texts that are too long are shown as "...".
std::string criterion_text(const Criterion& criterion, std::span<const RecordFlagType> flags);
// The same below the name of the field.
std::string criterion_header(std::string_view field_name, const Criterion& criterion,
                             std::span<const RecordFlagType> flags);

}  // namespace rowvane
