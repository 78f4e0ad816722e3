// The engine's side of the benchmarks: one operation a run, timed inside the process, its figures as a line
// of JSON.
//
// Every operation also tells what a peer must find too: the number of records and the sum of the delays.
#include <chrono>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "core/database/database.h"
#include "exchange/text/text_export.h"
#include "exchange/text/text_import.h"
#include "file/database_file.h"
#include "formula/passes/recalculation.h"
#include "recordset/compare/duplicates.h"
#include "recordset/compare/quartiles.h"
#include "recordset/find/find_text.h"
#include "recordset/search/search.h"
#include "recordset/sort/sort.h"
#include "sample_text.h"

namespace rowvane::bench {
namespace {

constexpr int kThreads = 2;
constexpr uint32_t kSmallRecords = 1000;
constexpr uint64_t kWideKeys = 200'000;
constexpr size_t kDelayField = 1;

using Arguments = std::vector<std::string>;

template <typename Work>
double timed_ms(const Work& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

// A line of JSON.
class Figures {
 public:
  template <typename Value>
  Figures& add(std::string_view name, Value value) {
    out_ << (empty_ ? "{" : ", ") << '"' << name << "\": " << value;
    empty_ = false;
    return *this;
  }
  void print() const { std::cout << out_.str() << "}\n"; }

 private:
  std::ostringstream out_;
  bool empty_ = true;
};

// A number of /proc/self/status, in bytes.
uint64_t process_bytes(std::string_view name) {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    if (word != name) continue;
    uint64_t kilobytes = 0;
    status >> kilobytes;
    return kilobytes * 1024;
  }
  fail("no " + std::string(name) + " in /proc/self/status");
}

uint64_t resident_bytes() {
  return process_bytes("VmRSS:");
}
uint64_t peak_bytes() {
  return process_bytes("VmHWM:");
}

uint64_t table_bytes(const CWorkSheet& table) {
  uint64_t bytes = 0;
  for (const Column& column : table.data().columns) bytes += memory_bytes(column);
  return bytes;
}

std::string notice_numbers(const std::vector<UserText>& notices) {
  std::string text = "[";
  for (const UserText& notice : notices) {
    if (text.size() > 1) text += ", ";
    text += std::to_string(notice.number());
  }
  return text + "]";
}

void add_content(Figures& figures, const CWorkSheet& table) {
  double delay = 0;
  const size_t field = table.find_field("delay").value_or(kDelayField);
  const auto* numbers = std::get_if<NumberColumn>(&table.column(field));
  if (numbers == nullptr) fail("the delays are no numbers");
  for (const double cell : numbers->cells) {
    if (!is_empty_number(cell)) delay += cell;
  }
  figures.add("records", table.record_count()).add("delay", static_cast<int64_t>(delay));
}

std::shared_ptr<const Secret> bench_password() {
  return std::make_shared<const Secret>("benchmark");
}

Options bench_options() {
  Options options;
  options.used_processor_cores = kThreads;
  return options;
}

TextImportResult open_text(const std::string& path) {
  TextImport settings;
  settings.table_name = "flights";
  settings.threads = kThreads;
  TextImportResult result = import_text_file(path, settings);
  if (!result.is_done()) fail(path + ": " + result.failure.text());
  return result;
}

void take_table(Database& database, std::unique_ptr<CWorkSheet> table) {
  if (const auto error = database.add_table(database.root(), table); error != ErrorCode::kOk) {
    fail(std::string(error_text(error)));
  }
}

void save_database(DatabaseFile& file, const std::string& path, int level) {
  SaveSettings settings;
  settings.level = level;
  const Outcome result = file.save(path, settings, bench_options());
  if (!result.is_done()) fail(path + ": " + result.failure.text());
}

OpenedDatabase open_saved(const std::string& path, const std::shared_ptr<const Secret>& password = nullptr) {
  OpenedDatabase opened = open_database(path, bench_options(), nullptr, Progress::none(), password);
  if (!opened.is_done()) fail(path + ": " + opened.failure.text());
  return opened;
}

std::unique_ptr<CWorkSheet> make_small_table() {
  std::vector<Field> fields(2);
  fields[0].name = "code";
  fields[1].name = "delay";
  fields[1].type = FieldType::kNumber;
  auto table = std::make_unique<CWorkSheet>("airports", std::move(fields));
  if (table->insert_records(1, kSmallRecords) != ErrorCode::kOk) fail("can't add records");
  for (RecordNumber record = 1; record < table->end_record(); ++record) {
    if (table->set_value(record, 0, CellValue("airport " + std::to_string(record.number()))) !=
            ErrorCode::kOk ||
        table->set_value(record, 1, CellValue(static_cast<double>(record.number()))) != ErrorCode::kOk) {
      fail("can't fill the small table");
    }
  }
  return table;
}

// TEXT: opens it as a table.
void run_open_text(const Arguments& arguments) {
  const uint64_t before = resident_bytes();
  TextImportResult result;
  const double ms = timed_ms([&] { result = open_text(arguments[0]); });
  Figures figures;
  figures.add("ms", ms);
  figures.add("rss_growth", resident_bytes() - before).add("peak_growth", peak_bytes() - before);
  figures.add("table_bytes", table_bytes(*result.table)).add("notices", notice_numbers(result.notices));
  add_content(figures, *result.table);
  figures.print();
}

// TEXT TARGET: writes the table of TEXT as TARGET.
void run_export(const Arguments& arguments) {
  const TextImportResult opened = open_text(arguments[0]);
  TextExport settings;
  settings.threads = kThreads;
  TextExportResult result;
  const double ms = timed_ms([&] { result = export_text(*opened.table, arguments[1], settings); });
  if (!result.is_done()) fail(arguments[1] + ": " + result.failure.text());
  Figures().add("ms", ms).print();
}

// TEXT TARGET LEVEL: saves the table of TEXT in a new database.
void run_save(const Arguments& arguments) {
  Database database("bench", bench_options());
  take_table(database, std::move(open_text(arguments[0]).table));
  DatabaseFile file(database);
  const int level = std::stoi(arguments[2]);
  Figures().add("ms", timed_ms([&] { save_database(file, arguments[1], level); })).print();
}

// TEXT TARGET CIPHER: saves the table of TEXT in a new protected database.
void run_save_protected(const Arguments& arguments) {
  Database database("bench", bench_options());
  take_table(database, std::move(open_text(arguments[0]).table));
  DatabaseFile file(database);
  const auto algorithm = cipher_named(arguments[2]);
  if (!algorithm) fail("no cipher " + arguments[2]);
  if (file.set_protection(Protection{bench_password(), *algorithm}) != ErrorCode::kOk) fail("can't protect");
  Figures().add("ms", timed_ms([&] { save_database(file, arguments[1], kDefaultDeflateLevel); })).print();
}

void open_and_print(const std::string& path, const std::shared_ptr<const Secret>& password) {
  const uint64_t before = resident_bytes();
  OpenedDatabase opened;
  const double ms = timed_ms([&] { opened = open_saved(path, password); });
  Figures figures;
  figures.add("ms", ms).add("notices", notice_numbers(opened.notices));
  figures.add("rss_growth", resident_bytes() - before).add("peak_growth", peak_bytes() - before);
  add_content(figures, *opened.database->tables().front());
  figures.print();
}

// FILE: opens a database.
void run_open(const Arguments& arguments) {
  open_and_print(arguments[0], nullptr);
}

// FILE: opens a protected database.
void run_open_protected(const Arguments& arguments) {
  open_and_print(arguments[0], bench_password());
}

// TEXT TARGET: saves a database of two tables, the table of TEXT and a small one.
void run_make_two_tables(const Arguments& arguments) {
  Database database("bench", bench_options());
  take_table(database, std::move(open_text(arguments[0]).table));
  take_table(database, make_small_table());
  DatabaseFile file(database);
  save_database(file, arguments[1], kDefaultDeflateLevel);
  Figures().add("tables", database.tables().size()).print();
}

// TARGET: saves a database of the small table alone.
void run_save_small(const Arguments& arguments) {
  Database database("bench", bench_options());
  take_table(database, make_small_table());
  DatabaseFile file(database);
  Figures().add("ms", timed_ms([&] { save_database(file, arguments[0], kDefaultDeflateLevel); })).print();
}

// FILE TABLE: opens a database, changes one delay of table TABLE and saves it; the change must be in the
// file.
void run_save_edited(const Arguments& arguments) {
  const double value = 4711;
  double ms = 0;
  {
    OpenedDatabase opened = open_saved(arguments[0]);
    CWorkSheet* table = opened.database->find_table(arguments[1]);
    if (table == nullptr) fail("no table " + arguments[1]);
    if (table->set_value(500, kDelayField, CellValue(value)) != ErrorCode::kOk) fail("can't change the cell");
    ms = timed_ms([&] { save_database(*opened.file, arguments[0], kDefaultDeflateLevel); });
  }
  const OpenedDatabase saved = open_saved(arguments[0]);
  const CellValue found = saved.database->find_table(arguments[1])->value(500, kDelayField);
  if (found.index() != 1 || std::get<double>(found) != value) fail("the change is lost");
  Figures().add("ms", ms).print();
}

// What a peer must find in the same column: the sum of its numbers, or the bytes of its texts.
double column_sum(const Column& column) {
  double sum = 0;
  if (const auto* numbers = std::get_if<NumberColumn>(&column)) {
    for (const double cell : numbers->cells) sum += is_empty_number(cell) ? 0 : cell;
  } else {
    const auto& texts = std::get<TextColumn>(column);
    for (size_t i = 0; i < texts.cells.size(); ++i) sum += static_cast<double>(texts.text(i).size());
  }
  return sum;
}

// TEXT TYPE FORMULA: calculates a field of TYPE, number or text, for the table of TEXT.
void run_calculate(const Arguments& arguments) {
  Database database("bench", bench_options());
  take_table(database, std::move(open_text(arguments[0]).table));
  CWorkSheet& table = *database.tables().front();
  Field field;
  field.name = "calculated";
  field.type = arguments[1] == "number" ? FieldType::kNumber : FieldType::kText;
  field.formula = arguments[2];
  const size_t index = table.field_count();
  if (table.insert_field(index, field) != ErrorCode::kOk) fail("can't add the field");
  Recalculation settings;
  settings.threads = kThreads;
  RecalculationResult result;
  const double ms = timed_ms([&] { result = recalculate(database, settings, FormulaSettings()); });
  if (!result.is_done() || result.fields != 1) fail("can't calculate");
  Figures figures;
  figures.add("ms", ms).add("sum", static_cast<int64_t>(column_sum(table.column(index)) + 0.5));
  add_content(figures, table);
  figures.print();
}

// TEXT WANTED MOST FIELDS: finds the first MOST records (0: all) that show WANTED in the "text" fields or in
// "all".
void run_find(const Arguments& arguments) {
  const TextImportResult opened = open_text(arguments[0]);
  const CWorkSheet& table = *opened.table;
  FindText settings;
  settings.pattern.text = arguments[1];
  settings.threads = kThreads;
  for (size_t i = 0; i < table.field_count(); ++i) {
    if (arguments[3] == "all" || table.field(i).type == FieldType::kText) settings.fields.push_back(i);
  }
  const size_t most = std::stoull(arguments[2]);
  const RecordSet records = all_records(table);
  FoundRecords found;
  const double ms = timed_ms(
      [&] { found = TextFinder(table, settings).find(records, 0, most == 0 ? TextFinder::kAll : most); });
  Figures().add("ms", ms).add("records", found.records.size()).print();
}

// "FIELD:KIND:TEXT", several with ";" between them.
std::vector<FieldCriterion> read_criteria(const CWorkSheet& table, const std::string& typed) {
  std::vector<FieldCriterion> criteria;
  std::istringstream all(typed);
  for (std::string one; std::getline(all, one, ';');) {
    const size_t colon = one.find(':');
    const auto field = table.find_field(one.substr(0, colon));
    const auto criterion = parse_criterion(one.substr(colon + 1));
    if (!field || !criterion) fail("no criterion: " + one);
    criteria.push_back({*field, *criterion});
  }
  return criteria;
}

// TEXT CRITERIA: searches the table of TEXT.
void run_search(const Arguments& arguments) {
  const TextImportResult opened = open_text(arguments[0]);
  Search settings;
  settings.criteria = read_criteria(*opened.table, arguments[1]);
  settings.threads = kThreads;
  SearchResult result;
  const double ms = timed_ms([&] { result = search(*opened.table, settings, FormulaSettings()); });
  if (!result.failure.empty()) fail(result.failure);
  Figures figures;
  figures.add("ms", ms).add("found", result.records.size());
  add_content(figures, *opened.table);
  figures.print();
}

// Indices of the fields that NAMES, joined by commas, names.
std::vector<size_t> find_fields(const CWorkSheet& table, const std::string& names) {
  std::vector<size_t> fields;
  std::istringstream list(names);
  for (std::string name; std::getline(list, name, ',');) {
    const auto field = table.find_field(name);
    if (!field) fail("no field " + name);
    fields.push_back(*field);
  }
  return fields;
}

// What a peer must find in the same records: their number, and their distances weighted by their places from
// 1 to 1000 and again.
void print_sorted(double ms, const CWorkSheet& table, const RecordSet& records) {
  constexpr size_t kWeights = 1000;
  const auto& distances = std::get<NumberColumn>(table.column(find_fields(table, "distance")[0])).cells;
  double sum = 0;
  for (size_t i = 0; i < records.size(); ++i) {
    sum += distances[records[i]] * static_cast<double>(i % kWeights + 1);
  }
  Figures().add("ms", ms).add("records", records.size()).add("sum", static_cast<int64_t>(sum)).print();
}

// The same without an order: the sum of the delays.
void print_found(double ms, const CWorkSheet& table, const RecordSet& records) {
  const auto& delays = std::get<NumberColumn>(table.column(kDelayField)).cells;
  double sum = 0;
  for (const uint32_t record : records) sum += delays[record];
  Figures().add("ms", ms).add("records", records.size()).add("sum", static_cast<int64_t>(sum)).print();
}

// TEXT FIELDS COLLATION: sorts the table of TEXT by these fields, "language" or "neutral".
void run_sort(const Arguments& arguments) {
  const TextImportResult opened = open_text(arguments[0]);
  const SortKeys keys = ascending_keys(find_fields(*opened.table, arguments[1]));
  SortOptions sort_options;
  if (arguments[2] == "neutral") sort_options.collation = SortCollation::kNeutral;
  const RecordSet all = all_records(*opened.table);
  RecordSetResult result;
  const double ms =
      timed_ms([&] { result = sort_records(*opened.table, all, keys, sort_options, bench_options()); });
  if (!result.is_done()) fail("can't sort");
  print_sorted(ms, *opened.table, result.records);
}

// TEXT FIELDS: finds all records that are equal to others in these fields.
void run_duplicates(const Arguments& arguments) {
  const TextImportResult opened = open_text(arguments[0]);
  const DuplicatesSearch search{.fields = find_fields(*opened.table, arguments[1]), .sort_results = false};
  const RecordSet all = all_records(*opened.table);
  RecordSetResult result;
  const double ms =
      timed_ms([&] { result = find_duplicates(*opened.table, all, search, SortOptions(), bench_options()); });
  if (!result.is_done()) fail("can't find duplicates");
  print_found(ms, *opened.table, result.records);
}

// TEXT FIELD: finds the records between the first quartile of a field and its median.
void run_quartiles(const Arguments& arguments) {
  const TextImportResult opened = open_text(arguments[0]);
  const QuartileSearch search{.field = find_fields(*opened.table, arguments[1])[0],
                              .mode = kFromFirstQuartile};
  const RecordSet all = all_records(*opened.table);
  QuartileResult result;
  const double ms = timed_ms([&] { result = find_quartiles(*opened.table, all, search, bench_options()); });
  if (!result.is_done()) fail("can't find quartiles");
  print_found(ms, *opened.table, result.records);
}

// TEXT: records and delays without the engine.
void run_sum(const Arguments& arguments) {
  const TextSum sum = sum_text(arguments[0]);
  Figures().add("records", sum.records).add("delay", sum.delay).add("bytes", sum.bytes).print();
}

// FROM TO RECORDS.
void run_make_records(const Arguments& arguments) {
  make_records(arguments[0], arguments[1], std::stoull(arguments[2]));
}

// FROM TO BYTES.
void run_make_wide(const Arguments& arguments) {
  const uint64_t records = make_wide(arguments[0], arguments[1], std::stoull(arguments[2]), kWideKeys);
  Figures().add("records", records).print();
}

struct Operation {
  size_t arguments;
  void (*run)(const Arguments&);
};

const std::map<std::string, Operation, std::less<>> kOperations = {
    {"open-text", {1, run_open_text}},
    {"export", {2, run_export}},
    {"save", {3, run_save}},
    {"open", {1, run_open}},
    {"save-protected", {3, run_save_protected}},
    {"open-protected", {1, run_open_protected}},
    {"make-two-tables", {2, run_make_two_tables}},
    {"save-small", {1, run_save_small}},
    {"save-edited", {2, run_save_edited}},
    {"calculate", {3, run_calculate}},
    {"find", {4, run_find}},
    {"search", {2, run_search}},
    {"sort", {3, run_sort}},
    {"duplicates", {2, run_duplicates}},
    {"quartiles", {2, run_quartiles}},
    {"sum", {1, run_sum}},
    {"make-records", {3, run_make_records}},
    {"make-wide", {3, run_make_wide}},
};

int run(int argc, char** argv) {
  const Arguments words(argv + 1, argv + argc);
  const auto found = words.empty() ? kOperations.end() : kOperations.find(words[0]);
  if (found == kOperations.end() || words.size() - 1 != found->second.arguments) {
    std::cerr << "Usage: rowvane_bench OPERATION ARGUMENT...\n";
    for (const auto& [name, operation] : kOperations) {
      std::cerr << "  " << name << ", " << operation.arguments << " arguments\n";
    }
    return 2;
  }
  found->second.run({words.begin() + 1, words.end()});
  return 0;
}

}  // namespace
}  // namespace rowvane::bench

int main(int argc, char** argv) {
  return rowvane::bench::run(argc, argv);
}
