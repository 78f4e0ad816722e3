// The inner loops of the engine, one by one.
//
// rowvane_micro FLIGHTS-TEXT [Google Benchmark's options]
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <benchmark/benchmark.h>

#include "core/table/text_pool.h"
#include "core/values/number_text.h"
#include "exchange/text/text_block.h"
#include "exchange/text/text_formatter.h"
#include "exchange/text/text_import.h"
#include "exchange/text/text_tokenizer.h"
#include "sample_text.h"
#include "zip/zlib_codec.h"

namespace rowvane::bench {
namespace {

constexpr size_t kSampleBytes = 4 << 20;
constexpr size_t kBlockBytes = 512 * 1024;

// The front of the flights text, whole lines.
std::string g_flights;
// Texts that need the quoting symbol: separators, line ends and quotes in them.
std::string g_quoted;

void read_flights(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  g_flights.resize(kSampleBytes);
  file.read(g_flights.data(), static_cast<std::streamsize>(g_flights.size()));
  g_flights.resize(static_cast<size_t>(file.gcount()));
  const size_t end = g_flights.rfind('\n');
  if (end == std::string::npos) fail("no lines in " + path);
  g_flights.resize(end + 1);
}

void make_quoted() {
  for (size_t record = 0; g_quoted.size() < kSampleBytes; ++record) {
    g_quoted += "\"He said \"\"" + std::to_string(record) + "\"\", twice\",\"line\none\",plain,\"" +
                std::string(record % 40, 'x') + "\"\n";
  }
}

// The bytes of a number in the text, as the parsers get it.
std::vector<std::string_view> cells_of(size_t column) {
  std::vector<std::string_view> cells;
  std::string_view left = g_flights;
  left.remove_prefix(left.find('\n') + 1);
  while (!left.empty()) {
    const size_t line_end = left.find('\n');
    std::string_view line = left.substr(0, line_end);
    for (size_t i = 0; i < column; ++i) line.remove_prefix(line.find(',') + 1);
    cells.push_back(line.substr(0, line.find(',')));
    left.remove_prefix(line_end + 1);
  }
  return cells;
}

void set_bytes(benchmark::State& state, size_t bytes) {
  state.SetBytesProcessed(static_cast<int64_t>(bytes) * static_cast<int64_t>(state.iterations()));
}
void set_items(benchmark::State& state, size_t items) {
  state.SetItemsProcessed(static_cast<int64_t>(items) * static_cast<int64_t>(state.iterations()));
}

// Blocks are decoded in place, so each round begins with a copy; `copy_block` tells its share.
void copy_block(benchmark::State& state, const std::string& text) {
  TextBlock block;
  for (auto _ : state) {
    block.clear();
    std::memcpy(block.reserve(text.size()), text.data(), text.size());
    block.set_size(text.size());
    benchmark::DoNotOptimize(block.text());
  }
  set_bytes(state, text.size());
}

void tokenize_block(benchmark::State& state, const std::string& text) {
  const TextRules rules = text_rules(TextFileSettings());
  TextBlock block;
  for (auto _ : state) {
    block.clear();
    std::memcpy(block.reserve(text.size()), text.data(), text.size());
    block.set_size(text.size());
    block.tokenize(rules);
    benchmark::DoNotOptimize(block.record_count());
  }
  set_bytes(state, text.size());
}

void tokenize_stream(benchmark::State& state, const std::string& text) {
  const TextRules rules = text_rules(TextFileSettings());
  size_t bytes = 0;
  TextTokenizer::Handler handler;
  handler.limit = [](size_t) { return size_t{1} << 16; };
  handler.cell = [&bytes](size_t, std::string_view cell, bool) { bytes += cell.size(); };
  handler.record_end = [] { return true; };
  for (auto _ : state) {
    TextTokenizer tokenizer(rules, handler);
    tokenizer.feed(text);
    tokenizer.finish();
    benchmark::DoNotOptimize(bytes);
  }
  set_bytes(state, text.size());
}

void find_last_record(benchmark::State& state, const std::string& text) {
  const TextRules rules = text_rules(TextFileSettings());
  const std::string_view block = std::string_view(text).substr(0, kBlockBytes);
  for (auto _ : state) benchmark::DoNotOptimize(last_record_end(block, rules));
  set_bytes(state, block.size());
}

// Numbers of several kinds.
std::vector<std::string> number_texts(const std::string& kind) {
  std::vector<std::string> texts;
  if (kind == "flights") {
    for (const std::string_view cell : cells_of(1)) texts.emplace_back(cell);
    return texts;
  }
  uint64_t random = 88172645463325252;
  for (int i = 0; i < 100'000; ++i) {
    random ^= random << 13;
    random ^= random >> 7;
    random ^= random << 17;
    if (kind == "money") {
      texts.push_back(std::to_string(random % 1'000'000) + "." + std::to_string(10 + random % 90));
    } else {
      texts.push_back(number_to_text(static_cast<double>(random) / 1e19));
    }
  }
  return texts;
}

template <typename Parse>
void parse_numbers(benchmark::State& state, const std::string& kind, const Parse& parse) {
  const std::vector<std::string> texts = number_texts(kind);
  for (auto _ : state) {
    double sum = 0;
    for (const std::string& text : texts) sum += parse(text);
    benchmark::DoNotOptimize(sum);
  }
  set_items(state, texts.size());
}

double parse_ours(const std::string& text) {
  double number = 0;
  parse_plain_number_exactly(text.data(), text.data() + text.size(), number);
  return number;
}
double parse_strtod(const std::string& text) {
  return std::strtod(text.c_str(), nullptr);
}
double parse_from_chars(const std::string& text) {
  double number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

template <typename Add>
void add_texts(benchmark::State& state, const std::vector<std::string>& texts, const Add& add) {
  for (auto _ : state) {
    TextPool pool;
    for (const std::string& text : texts) benchmark::DoNotOptimize(add(pool, text));
  }
  set_items(state, texts.size());
}

std::vector<std::string> distinct_texts() {
  std::vector<std::string> texts;
  for (int i = 0; i < 200'000; ++i) texts.push_back("customer " + std::to_string(i * 7919LL));
  return texts;
}

std::vector<std::string> repeating_texts() {
  std::vector<std::string> texts;
  for (const std::string_view cell : cells_of(3)) texts.emplace_back(cell);
  return texts;
}

TextPool::Code intern(TextPool& pool, const std::string& text) {
  return pool.intern(text);
}
TextPool::Code append(TextPool& pool, const std::string& text) {
  return pool.append(text);
}

void format_range(benchmark::State& state) {
  TextImport import;
  import.threads = 1;
  const TextImportResult opened = import_text_block(g_flights, import);
  if (!opened.is_done()) fail("can't open the sample");
  std::vector<size_t> fields(opened.table->field_count());
  for (size_t i = 0; i < fields.size(); ++i) fields[i] = i;
  const TextFormatter formatter(*opened.table, fields, TextFileSettings(), TextDialect());
  std::string out;
  for (auto _ : state) {
    out.clear();
    if (formatter.append_range(0, opened.table->record_count(), out) != ErrorCode::kOk) fail("can't format");
  }
  set_bytes(state, out.size());
}

void deflate_blocks(benchmark::State& state, int level) {
  const std::string_view block = std::string_view(g_flights).substr(0, kBlockBytes);
  Deflater deflater(level);
  std::string out;
  for (auto _ : state) {
    if (deflater.deflate_block(block, false, out) != ErrorCode::kOk) fail("can't deflate");
  }
  set_bytes(state, block.size());
  state.counters["packed_to"] = static_cast<double>(out.size()) / static_cast<double>(block.size());
}

void inflate_blocks(benchmark::State& state) {
  const std::string_view block = std::string_view(g_flights).substr(0, kBlockBytes);
  std::string packed;
  if (Deflater(1).deflate_block(block, true, packed) != ErrorCode::kOk) fail("can't deflate");
  std::string raw(block.size(), '\0');
  Inflater inflater;
  for (auto _ : state) {
    std::string_view input = packed;
    std::span<char> output(raw);
    if (inflater.start() != ErrorCode::kOk) fail("can't inflate");
    if (inflater.run(input, output) != ErrorCode::kOk || !output.empty()) fail("can't inflate");
  }
  set_bytes(state, block.size());
}

void crc_blocks(benchmark::State& state) {
  const std::string_view block = std::string_view(g_flights).substr(0, kBlockBytes);
  for (auto _ : state) benchmark::DoNotOptimize(crc32_of(block));
  set_bytes(state, block.size());
}

void register_tokenizers() {
  for (const auto& [name, text] : {std::pair{"flights", &g_flights}, std::pair{"quoted", &g_quoted}}) {
    const std::string end = std::string("/") + name;
    const std::string& sample = *text;
    benchmark::RegisterBenchmark(("copy block" + end).c_str(),
                                 [&sample](auto& state) { copy_block(state, sample); });
    benchmark::RegisterBenchmark(("tokenize block" + end).c_str(),
                                 [&sample](auto& state) { tokenize_block(state, sample); });
    benchmark::RegisterBenchmark(("tokenize stream" + end).c_str(),
                                 [&sample](auto& state) { tokenize_stream(state, sample); });
    benchmark::RegisterBenchmark(("last record end" + end).c_str(),
                                 [&sample](auto& state) { find_last_record(state, sample); });
  }
}

void register_numbers() {
  const std::pair<const char*, double (*)(const std::string&)> parsers[] = {
      {"parse_plain_number_exactly", parse_ours}, {"strtod", parse_strtod}, {"from_chars", parse_from_chars}};
  for (const std::string kind : {"flights", "money", "17 digits"}) {
    for (const auto& [name, parse] : parsers) {
      benchmark::RegisterBenchmark((std::string(name) + "/" + kind).c_str(),
                                   [kind, parse](auto& state) { parse_numbers(state, kind, parse); });
    }
  }
}

void register_all() {
  register_tokenizers();
  register_numbers();
  benchmark::RegisterBenchmark("intern/few distinct",
                               [](auto& state) { add_texts(state, repeating_texts(), intern); });
  benchmark::RegisterBenchmark("intern/all distinct",
                               [](auto& state) { add_texts(state, distinct_texts(), intern); });
  benchmark::RegisterBenchmark("append/few distinct",
                               [](auto& state) { add_texts(state, repeating_texts(), append); });
  benchmark::RegisterBenchmark("append/all distinct",
                               [](auto& state) { add_texts(state, distinct_texts(), append); });
  benchmark::RegisterBenchmark("format range", format_range);
  for (const int level : {1, 6}) {
    benchmark::RegisterBenchmark(("deflate/level " + std::to_string(level)).c_str(),
                                 [level](auto& state) { deflate_blocks(state, level); });
  }
  benchmark::RegisterBenchmark("inflate", inflate_blocks);
  benchmark::RegisterBenchmark("crc32", crc_blocks);
}

int run(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (argc != 2) fail("Usage: rowvane_micro FLIGHTS-TEXT [OPTION...]");
  read_flights(argv[1]);
  make_quoted();
  register_all();
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}

}  // namespace
}  // namespace rowvane::bench

int main(int argc, char** argv) {
  return rowvane::bench::run(argc, argv);
}
