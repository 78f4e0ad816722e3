#include "formula/formats/format_code.h"

#include <algorithm>

#include "formula/formats/format_lexer.h"
#include "formula/formats/format_section.h"

namespace rowvane {
namespace {

constexpr size_t kMostNumberSections = 3;

bool is_met(FormatComparison comparison, double number, double limit) {
  switch (comparison) {
    case FormatComparison::kNone:
      return true;
    case FormatComparison::kLess:
      return number < limit;
    case FormatComparison::kLessOrEqual:
      return number <= limit;
    case FormatComparison::kEqual:
      return number == limit;
    case FormatComparison::kNotEqual:
      return number != limit;
    case FormatComparison::kGreaterOrEqual:
      return number >= limit;
    case FormatComparison::kGreater:
      return number > limit;
  }
  return false;
}

void set_condition(FormatSection& section, FormatComparison comparison) {
  if (section.comparison == FormatComparison::kNone) section.comparison = comparison;
}

bool shows_entered(const FormatSection& section) {
  return std::ranges::any_of(section.parts,
                             [](const FormatPart& part) { return part.kind == FormatPartKind::kEntered; });
}

}  // namespace

FormatCode::FormatCode(std::string_view code, const FormatSeparators& separators) : code_(code) {
  if (code.size() > kMaxFormatCodeBytes) {
    problem_ =
        "The format code can't be used: it is longer than " + std::to_string(kMaxFormatCodeBytes) + " bytes";
    return;
  }
  FormatLexer lexer(code_, separators);
  do {
    FormatSection section;
    if (!lexer.read_section(section)) {
      problem_ = lexer.problem();
    } else if (const std::string_view problem = arrange_section(code_, section); !problem.empty()) {
      problem_ = "The format code can't be used: " + std::string(problem);
    } else if (sections_.size() > kMostNumberSections) {
      problem_ = "The format code can't be used: it has more than four sections";
    }
    sections_.push_back(std::move(section));
  } while (problem_.empty() && lexer.has_more());
  set_default_conditions();
  if (problem_.empty()) return;
  sections_.clear();
  has_text_section_ = false;
}

// The last section is the one for texts when it is the fourth or shows them.
void FormatCode::set_default_conditions() {
  const size_t count = sections_.size();
  has_text_section_ = count > kMostNumberSections || shows_entered(sections_.back());
  for (size_t i = 0; i + 1 < count; ++i) {
    if (shows_entered(sections_[i]) && problem_.empty())
      problem_ = "The format code can't be used: only the last section shows texts";
  }
  const size_t numbers = has_text_section_ && count > 1 ? count - 1 : count;
  if (numbers == 2 && sections_[0].comparison == FormatComparison::kNone) {
    set_condition(sections_[0], FormatComparison::kGreaterOrEqual);
    set_condition(sections_[1], FormatComparison::kLess);
  }
  if (numbers == 3) {
    set_condition(sections_[0], FormatComparison::kGreater);
    set_condition(sections_[1], FormatComparison::kLess);
  }
  // What is shown only for negative numbers says so itself.
  for (FormatSection& section : sections_) {
    const bool only_negative = (section.comparison == FormatComparison::kLess && section.limit <= 0) ||
                               ((section.comparison == FormatComparison::kLessOrEqual ||
                                 section.comparison == FormatComparison::kEqual) &&
                                section.limit < 0);
    section.shows_sign = !only_negative;
  }
}

const FormatSection* FormatCode::section_of(double number) const {
  const size_t numbers = sections_.size() - (has_text_section_ && sections_.size() > 1 ? 1 : 0);
  for (size_t i = 0; i < numbers; ++i) {
    if (is_met(sections_[i].comparison, number, sections_[i].limit)) return &sections_[i];
  }
  return nullptr;
}

}  // namespace rowvane
