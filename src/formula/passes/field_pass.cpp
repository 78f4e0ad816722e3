#include "formula/passes/field_pass.h"

#include <algorithm>

#include "core/parallel_blocks.h"
#include "formula/passes/block_evaluator.h"
#include "formula/passes/field_results.h"

namespace rowvane {
namespace {

constexpr uint64_t kReportEvery = 64;  // blocks

FormulaError error_of(const Scalar& result) {
  return result.is_error() ? result.error : FormulaError::kNone;
}

// The first error of a record stays.
void keep_outcome(FormulaError error, RecordFlags& outcome) {
  if (outcome == 0) outcome = static_cast<RecordFlags>(static_cast<unsigned>(error) << 1);
}

// True when the block is known to hold no error, so that nobody needs to look at each record.
bool is_free_of_errors(const BlockVector& results, size_t count) {
  if (results.form == BlockVector::Form::kConstant) return !results.constant.is_error();
  if (results.form != BlockVector::Form::kNumbers) return false;
  return std::all_of(results.numbers, results.numbers + count, [](double cell) { return cell == cell; });
}

// Fills a column, each thread its own part of it.
class ColumnPass {
 public:
  explicit ColumnPass(const FieldPass& pass)
      : pass_(pass),
        program_(pass.table.field(pass.field).formula, &pass.table, pass.formulas),
        stored_(pass.table.column(pass.field)),
        texts_(static_cast<size_t>(kMaxThreads)),
        blocks_(static_cast<size_t>(kMaxThreads)) {}

  Column run() {
    const uint32_t count = pass_.table.record_count();
    const bool numbers = std::holds_alternative<NumberColumn>(stored_);
    if (numbers) {
      numbers_.resize(count);
    } else {
      codes_.resize(count);
    }
    parallel_blocks(count, pass_.threads, [this](int thread, uint64_t first, uint64_t end) {
      blocks_[static_cast<size_t>(thread)] = {first, end};
      run_thread(static_cast<size_t>(thread), first, end);
    });
    if (numbers) return NumberColumn{std::move(numbers_)};
    const auto unused =
        std::ranges::find_if(blocks_, [](const ThreadBlock& block) { return block.first == block.end; });
    const auto threads = static_cast<size_t>(unused - blocks_.begin());
    return join_text_results(texts_, {blocks_.data(), threads}, std::move(codes_));
  }

 private:
  void run_thread(size_t thread, uint64_t first, uint64_t end) {
    BlockEvaluator evaluator(program_);
    WorkArea area(WorkArea::kUnlimited);
    const ScalarContext context{area, pass_.formulas.generic};
    for (uint64_t from = first, block = 0; from < end; from += kBlockRecords, ++block) {
      if (block % kReportEvery == 0 && pass_.progress.cancelled()) return;
      const size_t count = static_cast<size_t>(std::min<uint64_t>(kBlockRecords, end - from));
      area.clear();
      const BlockVector& results = evaluator.run(static_cast<uint32_t>(from), count);
      if (std::holds_alternative<NumberColumn>(stored_)) {
        write_number_cells(results, count, context, numbers_.data() + from);
      } else {
        texts_[thread].write(results, count, context, codes_.data() + from);
      }
      if (!pass_.table.data().flags.empty()) keep_skipped(thread, from, count);
      keep_outcomes(results, from, count);
      report(count, block);
    }
  }

  void keep_skipped(size_t thread, uint64_t from, size_t count) {
    for (uint64_t i = from; i < from + count; ++i) {
      if (!is_skipped(i)) continue;
      if (const auto* numbers = std::get_if<NumberColumn>(&stored_)) {
        numbers_[i] = numbers->cells[i];
      } else {
        codes_[i] = texts_[thread].code_for(std::get<TextColumn>(stored_).text(i));
      }
    }
  }

  bool is_skipped(uint64_t position) const {
    return (pass_.table.flags(record_number(static_cast<uint32_t>(position))) & kSkippedFlag) != 0;
  }

  void keep_outcomes(const BlockVector& results, uint64_t from, size_t count) {
    if (pass_.outcomes == nullptr || is_free_of_errors(results, count)) return;
    for (size_t i = 0; i < count; ++i) {
      if (!is_skipped(from + i)) keep_outcome(error_of(results.at(i)), (*pass_.outcomes)[from + i]);
    }
  }

  void report(size_t count, uint64_t block) {
    const uint64_t done = done_.fetch_add(count, std::memory_order_relaxed) + count;
    if (block % kReportEvery == 0) pass_.progress.report(done, pass_.table.record_count());
  }

  const FieldPass& pass_;
  FormulaProgram program_;
  const Column& stored_;
  NumberColumn::Cells numbers_;
  TextColumn::Cells codes_;
  std::vector<TextResults> texts_;
  std::vector<ThreadBlock> blocks_;
  std::atomic<uint64_t> done_ = 0;
};

}  // namespace

Column calculate_column(const FieldPass& pass) {
  return ColumnPass(pass).run();
}

Column calculate_cells(const FieldPass& pass, std::span<const uint32_t> positions) {
  const FormulaProgram program(pass.table.field(pass.field).formula, &pass.table, pass.formulas);
  Column cells = make_column(pass.table.field(pass.field).type);
  resize_column(cells, positions.size());
  FormulaEvaluator evaluator(pass.formulas);
  evaluator.set_table(&pass.table);
  WorkArea area;
  const ScalarContext context{area, pass.formulas.generic};
  for (size_t i = 0; i < positions.size(); ++i) {
    if ((pass.table.flags(record_number(positions[i])) & kSkippedFlag) != 0) {
      store_value(cells, i, pass.table.value(record_number(positions[i]), pass.field));
      continue;
    }
    evaluator.set_record(positions[i]);
    program.run(evaluator);
    const Scalar result = evaluator.result();
    area.clear();
    if (auto* numbers = std::get_if<NumberColumn>(&cells)) {
      numbers->cells[i] = number_cell_of(result, context);
    } else {
      auto& texts = std::get<TextColumn>(cells);
      texts.cells[i] = texts.code_for(text_cell_of(result, context));
    }
  }
  return cells;
}

}  // namespace rowvane
