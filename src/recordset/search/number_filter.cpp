#include <algorithm>
#include <cmath>
#include <limits>

#include "formula/passes/formula_program.h"
#include "recordset/search/record_filter.h"

namespace rowvane {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// The number that TEXT is in a formula: plain, or with a minus sign. Nothing for another expression.
std::optional<double> plain_number(std::string_view text, const FormulaSettings& formulas) {
  const FormulaProgram program("=" + std::string(text), nullptr, formulas);
  const auto& steps = program.steps();
  if (program.error() != FormulaError::kNone || steps.empty() || steps.size() > 2) return std::nullopt;
  const FormulaStep& first = steps[0];
  if (first.kind != FormulaStep::Kind::kPush || !first.value.single().is_number()) return std::nullopt;
  const double number = first.value.single().number;
  if (steps.size() == 1) return number;
  const bool negated = steps[1].kind == FormulaStep::Kind::kApply && steps[1].operation == Kind::kNegate;
  return negated ? std::optional(-number) : std::nullopt;
}

// The numbers of all TEXTS; nothing when one of them is none.
std::optional<std::vector<double>> plain_numbers(std::span<const std::string_view> texts,
                                                 const FormulaSettings& formulas) {
  std::vector<double> numbers;
  for (const std::string_view text : texts) {
    const auto number = plain_number(text, formulas);
    if (!number) return std::nullopt;
    numbers.push_back(*number);
  }
  return numbers;
}

// The numbers from `low` to `high`, or all others. A cell with an error never matches.
struct NumberRange {
  double low;
  double high;
  bool inside = true;

  bool holds_zero() const { return (low <= 0 && high >= 0) == inside; }
};
constexpr NumberRange kNoNumber{1, 0};

// MATCHES answers 0 or 1, without a branch where it is to be fast.
template <typename Matches>
size_t keep_numbers(const double* cells, uint32_t* positions, size_t count, bool empty_matches,
                    const Matches& matches) {
  if (!empty_matches)
    return keep_matches(positions, count, [&](uint32_t position) { return matches(cells[position]); });
  return keep_matches(positions, count, [&](uint32_t position) {
    return matches(cells[position]) | static_cast<int>(is_empty_number(cells[position]));
  });
}

class RangeWorker final : public FilterWorker {
 public:
  RangeWorker(const double* cells, const NumberRange& range, bool empty_matches)
      : cells_(cells), range_(range), empty_matches_(empty_matches) {}

  size_t keep(uint32_t* positions, size_t count) override {
    const double low = range_.low;
    const double high = range_.high;
    if (range_.inside) {
      return keep_numbers(cells_, positions, count, empty_matches_, [low, high](double cell) {
        return static_cast<int>(cell >= low) & static_cast<int>(cell <= high);
      });
    }
    return keep_numbers(cells_, positions, count, empty_matches_, [low, high](double cell) {
      return static_cast<int>(cell < low) | static_cast<int>(cell > high);
    });
  }

 private:
  const double* cells_;
  NumberRange range_;
  bool empty_matches_;
};

class RangeFilter final : public RecordFilter {
 public:
  RangeFilter(const NumberColumn& column, const NumberRange& range, bool empty_matches)
      : cells_(column.cells.data()), range_(range), empty_matches_(empty_matches) {}
  std::unique_ptr<FilterWorker> make_worker() const override {
    return std::make_unique<RangeWorker>(cells_, range_, empty_matches_);
  }
  int cost() const override { return 1; }

 private:
  const double* cells_;
  NumberRange range_;
  bool empty_matches_;
};

// Any one of several numbers.
class NumberSetFilter final : public RecordFilter {
 public:
  NumberSetFilter(const NumberColumn& column, std::vector<double> numbers)
      : cells_(column.cells.data()), numbers_(std::move(numbers)) {
    std::ranges::sort(numbers_);
  }
  std::unique_ptr<FilterWorker> make_worker() const override { return std::make_unique<Worker>(*this); }
  int cost() const override { return 5; }

 private:
  class Worker final : public FilterWorker {
   public:
    explicit Worker(const NumberSetFilter& filter) : filter_(filter) {}
    size_t keep(uint32_t* positions, size_t count) override {
      const std::vector<double>& numbers = filter_.numbers_;
      return keep_numbers(
          filter_.cells_, positions, count, std::ranges::binary_search(numbers, 0.0),
          [&numbers](double cell) {
            return static_cast<int>(cell == cell && std::ranges::binary_search(numbers, cell));
          });
    }

   private:
    const NumberSetFilter& filter_;
  };

  const double* cells_;
  std::vector<double> numbers_;
};

// NUMBERS are those of the criterion, as many as its kind takes.
NumberRange range_of(CriterionKind kind, const std::vector<double>& numbers) {
  const double number = numbers[0];
  switch (kind) {
    case CriterionKind::kNotEqual:
      return {number, number, false};
    case CriterionKind::kGreaterThan:
      return {std::nextafter(number, kInfinity), kInfinity};
    case CriterionKind::kLessThan:
      return {-kInfinity, std::nextafter(number, -kInfinity)};
    case CriterionKind::kBetween:
      return {number, numbers[1]};
    case CriterionKind::kAnd:  // all of them at once: only where they are the same
      return {std::ranges::max(numbers), std::ranges::min(numbers)};
    default:
      return {number, number};
  }
}

}  // namespace

RecordFilterPointer make_number_filter(const FilterContext& context, size_t field,
                                       const Criterion& criterion) {
  const auto* column = std::get_if<NumberColumn>(&context.table.column(field));
  if (column == nullptr) return nullptr;
  if (criterion.kind == CriterionKind::kIsEmpty)
    return std::make_unique<RangeFilter>(*column, kNoNumber, true);
  std::vector<std::string_view> texts{criterion.text};
  if (criterion.kind >= CriterionKind::kBetween) texts = criterion_words(criterion.text);
  if (criterion.kind == CriterionKind::kBetween && texts.size() > 2) texts.resize(2);
  auto numbers = plain_numbers(texts, context.formulas);
  if (!numbers || numbers->empty()) return nullptr;
  if (criterion.kind == CriterionKind::kBetween && numbers->size() < 2) return nullptr;
  if (criterion.kind == CriterionKind::kOr)
    return std::make_unique<NumberSetFilter>(*column, std::move(*numbers));
  const NumberRange range = range_of(criterion.kind, *numbers);
  return std::make_unique<RangeFilter>(*column, range, range.holds_zero());  // an empty cell is 0
}

}  // namespace rowvane
