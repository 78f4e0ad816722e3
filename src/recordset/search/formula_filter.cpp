#include "formula/passes/block_evaluator.h"
#include "recordset/search/record_filter.h"

namespace rowvane {
namespace {

constexpr size_t kFewOfBlock = kBlockRecords / 8;

class FormulaFilter final : public RecordFilter {
 public:
  FormulaFilter(const FilterContext& context, std::string_view formula)
      : context_(context),
        program_(formula, &context.table, context.formulas),
        works_on_columns_(BlockEvaluator(program_).works_on_columns()) {}

  std::unique_ptr<FilterWorker> make_worker() const override { return std::make_unique<Worker>(*this); }
  int cost() const override { return works_on_columns_ ? 10 : 500; }

 private:
  class Worker final : public FilterWorker {
   public:
    explicit Worker(const FormulaFilter& filter)
        : filter_(filter), blocks_(filter.program_), evaluator_(filter.context_.formulas) {
      evaluator_.set_table(&filter.context_.table);
    }

    size_t keep(uint32_t* positions, size_t count) override {
      area_.clear();
      if (!filter_.works_on_columns_ || count < kFewOfBlock) return keep_single(positions, count);
      const uint32_t first = positions[0];
      const BlockVector& results = blocks_.run(first, positions[count - 1] - first + size_t{1});
      if (results.form == BlockVector::Form::kNumbers) {
        return keep_matches(positions, count, [&results, first](uint32_t position) {
          const double cell = results.numbers[position - first];
          return cell == cell && cell != 0;
        });
      }
      return keep_matches(positions, count, [&](uint32_t position) {
        return to_truth(results.at(position - first), scalars()).value_or(false);
      });
    }

   private:
    // Record by record.
    size_t keep_single(uint32_t* positions, size_t count) {
      return keep_matches(positions, count, [this](uint32_t position) {
        if (!filter_.works_on_columns_ && filter_.context_.state.is_over()) return false;
        evaluator_.set_record(position);
        if (filter_.program_.run(evaluator_) == Kind::kError) return false;
        return to_truth(evaluator_.result(), evaluator_.context()).value_or(false);
      });
    }

    ScalarContext scalars() { return {area_, filter_.context_.formulas.generic}; }

    const FormulaFilter& filter_;
    BlockEvaluator blocks_;
    FormulaEvaluator evaluator_;
    WorkArea area_;
  };

  const FilterContext& context_;
  FormulaProgram program_;
  bool works_on_columns_;
};

}  // namespace

RecordFilterPointer make_formula_filter(const FilterContext& context, std::string_view formula) {
  return std::make_unique<FormulaFilter>(context, formula);
}

}  // namespace rowvane
