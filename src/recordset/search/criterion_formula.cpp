#include "recordset/search/criterion_formula.h"

#include "core/limits.h"

namespace rowvane {
namespace {

constexpr size_t kTooLongFormula = kMaxBufferBytes + 1;
constexpr size_t kReserve = 10;  // bytes for what stands around the parts

using Words = std::vector<std::string_view>;

// Joins the parts of a formula.
std::string joined(std::initializer_list<std::string_view> parts) {
  std::string text;
  for (const std::string_view part : parts) text += part;
  return text;
}

class Converter {
 public:
  explicit Converter(const Field& field)
      : name_(field.name), quote_(field.type == FieldType::kNumber ? "" : "\"") {}

  std::string starts_with(std::string_view text) const {
    if (name_.size() + 2 * (text.size() + kReserve) >= kTooLongFormula) return {};
    return joined({"=SEARCH(\"", text, "\", ", name_, ",) = 1"});
  }

  std::string compared(std::string_view comparison, std::string_view value) const {
    if (!fits(name_.size(), value.size(), kReserve)) return {};
    return joined({"=", name_, " ", comparison, " ", quote_, value, quote_});
  }

  std::string between(std::string_view text) const {
    const Words words = criterion_words(text);
    if (words.size() < 2 || !fits(name_.size(), text.size(), kReserve + 20)) return {};
    return joined(
        {"=(", name_, " >= ", quote_, words[0], quote_, ")*(", name_, " <= ", quote_, words[1], quote_, ")"});
  }

  // FUNCTION of a condition for each word.
  std::string of_words(std::string_view function, std::string_view text, std::string_view search_end) const {
    const Words words = criterion_words(text);
    if (words.empty()) return {};
    std::string formula = joined({"=", function, "("});
    for (const std::string_view word : words) {
      if (!fits(formula.size(), name_.size() + word.size(), kReserve)) return {};
      if (word.data() != words.front().data()) formula += ", ";
      formula += quote_.empty() ? joined({name_, " = ", word})
                                : joined({"SEARCH(\"", word, "\", ", name_, ",)", search_end});
    }
    return formula + ")";
  }

  std::string is_empty() const {
    if (!fits(name_.size(), 0, kReserve)) return {};
    return joined({"=TRIM(", name_, ") = \"\""});
  }

 private:
  static bool fits(size_t written, size_t more, size_t reserve) {
    return written + more + reserve < kTooLongFormula;
  }

  std::string_view name_;
  std::string_view quote_;  // around values; empty for numbers
};

std::string converted(const Field& field, const Criterion& criterion) {
  const Converter converter(field);
  const std::string& text = criterion.text;
  switch (criterion.kind) {
    case CriterionKind::kFormula:
    case CriterionKind::kRegEx:
      return text;
    case CriterionKind::kStartsWith:
      return converter.starts_with(text);
    case CriterionKind::kEqual:
      return converter.compared("=", text);
    case CriterionKind::kNotEqual:
      return converter.compared("<>", text);
    case CriterionKind::kGreaterThan:
      return converter.compared(">", text);
    case CriterionKind::kLessThan:
      return converter.compared("<", text);
    case CriterionKind::kBetween:
      return converter.between(text);
    case CriterionKind::kAnd:
      return converter.of_words("AND", text, "");
    case CriterionKind::kOr:
      return converter.of_words("OR", text, " = 1");
    case CriterionKind::kIsEmpty:
      return converter.is_empty();
    case CriterionKind::kSimilar:
    case CriterionKind::kFlag:
      break;
  }
  return {};
}

}  // namespace

std::string equivalent_formula(const Field& field, const Criterion& criterion) {
  std::string formula = converted(field, criterion);
  if (formula.size() > kMaxBufferBytes) formula.clear();
  return formula;
}

}  // namespace rowvane
