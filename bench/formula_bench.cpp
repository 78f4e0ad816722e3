// The formula engine, token by token and formula by formula.
//
// formula_micro [Google Benchmark's options]
#include <string>

#include <benchmark/benchmark.h>

#include "core/table/work_sheet.h"
#include "formula/passes/block_evaluator.h"
#include "formula/passes/field_results.h"
#include "sample_text.h"

namespace rowvane::bench {
namespace {

constexpr uint32_t kRecords = 65'536;
constexpr const char* kFormulas[] = {"=delay*2+distance/3", "=if(delay>30,\"late\",\"on time\")",
                                     "=origin&\"-\"&destination", "=round(sum(delay,distance)/7,2)"};

std::unique_ptr<CWorkSheet> make_flights() {
  TableData data;
  data.record_count = kRecords;
  for (const auto& [name, type] :
       {std::pair("delay", FieldType::kNumber), std::pair("distance", FieldType::kNumber),
        std::pair("origin", FieldType::kText), std::pair("destination", FieldType::kText)}) {
    Field field;
    field.name = name;
    field.type = type;
    data.fields.push_back(field);
    data.columns.push_back(make_column(type));
    resize_column(data.columns.back(), kRecords);
  }
  for (uint32_t i = 0; i < kRecords; ++i) {
    store_value(data.columns[0], i, static_cast<double>(i * 7919 % 200) - 50);
    store_value(data.columns[1], i, static_cast<double>(i * 104729 % 2500));
    store_value(data.columns[2], i, "O" + std::to_string(i * 31 % 300));
    store_value(data.columns[3], i, "D" + std::to_string(i * 17 % 300));
  }
  return std::make_unique<CWorkSheet>("flights", std::move(data));
}

const CWorkSheet& flights() {
  static const std::unique_ptr<CWorkSheet> table = make_flights();
  return *table;
}

void evaluate(benchmark::State& state, const std::string& formula) {
  const FormulaSettings settings;
  FormulaEvaluator evaluator(settings);
  evaluator.set_table(&flights());
  uint32_t record = 0;
  for (auto _ : state) {
    evaluator.set_record(record++ % kRecords);
    benchmark::DoNotOptimize(evaluator.evaluate(formula));
  }
}

void read_tokens(benchmark::State& state, const std::string& formula) {
  const FormulaSettings settings;
  FormulaLexer lexer(settings);
  lexer.set_table(&flights());
  int64_t tokens = 0;
  for (auto _ : state) {
    lexer.start();
    Token token;
    for (size_t cursor = 1; lexer.next_token(formula, cursor, token, SeparatorSet::kGeneric) != Kind::kEnd;)
      ++tokens;
    benchmark::DoNotOptimize(token);
  }
  state.SetItemsProcessed(tokens);
}

void run_program(benchmark::State& state, const std::string& formula) {
  const FormulaSettings settings;
  FormulaEvaluator evaluator(settings);
  evaluator.set_table(&flights());
  const FormulaProgram program(formula, &flights(), settings);
  uint32_t record = 0;
  for (auto _ : state) {
    evaluator.set_record(record++ % kRecords);
    benchmark::DoNotOptimize(program.run(evaluator));
  }
}

void run_blocks(benchmark::State& state, const std::string& formula) {
  const FormulaSettings settings;
  const FormulaProgram program(formula, &flights(), settings);
  BlockEvaluator blocks(program);
  for (auto _ : state) {
    for (uint32_t first = 0; first < kRecords; first += kBlockRecords) {
      benchmark::DoNotOptimize(blocks.run(first, kBlockRecords));
    }
  }
  state.SetItemsProcessed(state.iterations() * kRecords);
}

struct Way {
  const char* name;
  void (*run)(benchmark::State&, const std::string&);
};
constexpr Way kWays[] = {
    {"tokens", read_tokens}, {"evaluate", evaluate}, {"program", run_program}, {"blocks", run_blocks}};

void register_all() {
  for (const std::string formula : kFormulas) {
    for (const Way& way : kWays) {
      benchmark::RegisterBenchmark(
          (std::string(way.name) + " " + formula).c_str(),
          [formula, run = way.run](benchmark::State& state) { run(state, formula); });
    }
  }
}

}  // namespace
}  // namespace rowvane::bench

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  rowvane::bench::register_all();
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
