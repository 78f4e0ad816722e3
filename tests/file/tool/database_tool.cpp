// Database files for the scripts that test them from outside.
//   database_tool make FILE          a database with one of everything
//   database_tool save-loop FILE     saves one state after the other until it is killed
//   database_tool check FILE         fails unless FILE holds one state of save-loop, whole
//   database_tool dump FILE          everything that FILE holds, as text
//   database_tool protect FILE CIPHER            protects FILE with the password
//   database_tool protect-read-only FILE CIPHER  and lets everybody read it
// The password is the environment variable RVB_PASSWORD.
#include <bit>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>

#include "file/database_file.h"

namespace {

using namespace rowvane;

constexpr uint32_t kRecords = 20'000;

int fail(const std::string& what, ErrorCode error) {
  std::fprintf(stderr, "%s: error %d\n", what.c_str(), static_cast<int>(error));
  return 1;
}

void expect(ErrorCode error) {
  if (error != ErrorCode::kOk) std::exit(fail("making a database", error));
}

Field field(std::string name, FieldType type) {
  Field made;
  made.name = std::move(name);
  made.type = type;
  return made;
}

CWorkSheet& add_table(Database& database, Folder& folder, const std::string& name) {
  auto table = std::make_unique<CWorkSheet>(
      name, std::vector{field("text", FieldType::kText), field("number", FieldType::kNumber),
                        field("long, \"text\"", FieldType::kLongText), field("files", FieldType::kFiles),
                        field("code", FieldType::kCode)});
  CWorkSheet& added = *table;
  expect(database.add_table(folder, table));
  return added;
}

std::string all_characters() {
  std::string text;
  for (int byte = 0; byte < 0x80; ++byte) text += static_cast<char>(byte);
  return text + "äöü € \xF0\x9F\x98\x80";
}

void fill_sample(CWorkSheet& table) {
  using Limits = std::numeric_limits<double>;
  const std::vector<std::string> texts = {"plain", "",       "a,b",   "\"q\"", " lead",         "trail ",
                                          "\ttab", "a\r\nb", "#REF!", "007",   all_characters()};
  const std::vector<double> numbers = {0.0,
                                       -0.0,
                                       1.5,
                                       -3,
                                       1e300,
                                       Limits::denorm_min(),
                                       0.1,
                                       123456789012345.0,
                                       error_number(FormulaError::kRef),
                                       kEmptyNumber,
                                       1.0 / 3};
  expect(table.insert_records(1, static_cast<uint32_t>(texts.size())));
  for (uint32_t i = 0; i < texts.size(); ++i) {
    expect(table.set_value(record_number(i), 0, texts[i]));
    expect(table.set_value(record_number(i), 1, numbers[i]));
  }
  expect(table.set_value(1, 2, Content::of("{\\rtf1 rich}")));
  expect(table.set_value(3, 2, Content::of("long\r\ntext " + all_characters())));
  expect(table.set_value(2, 4, Content::of("x = 1\n")));
  const FileList files = {{"b.zip", {}, Content::of("stored")},
                          {"a.txt", {}, Content::of("packed")},
                          {"c.doc", "/home/c.doc", Content()},
                          {"other name", "C:\\d|e.doc", Content()}};
  expect(table.set_value(4, 3, files));
  const uint32_t flagged[] = {1, 2, 7};
  expect(table.set_flag_type(flagged, 2));
}

// TABLE with what a later version of the program might keep with it.
std::unique_ptr<CWorkSheet> with_later_objects(const CWorkSheet& table,
                                               const std::vector<LaterObjects>& later) {
  TableData data = table.data();
  data.later_objects.kinds = later;
  data.later_objects.set_fields(data.fields, data.field_ids);
  return std::make_unique<CWorkSheet>(table.name(), std::move(data));
}

int make(const std::string& path) {
  const auto later = std::make_shared<const std::string>("later\r\n");
  Database database;
  database.set_later_objects({{1000, 1, later}, {60'000, 7, later}});
  expect(database.change_settings({{{"list", {"one", "two"}}}, {{"checked", 0xFF0000}, {"late", 0x0000FF}}}));
  Folder* folder = nullptr;
  expect(database.make_folders("past/2024", &folder));
  fill_sample(add_table(database, database.root(), "orders"));
  fill_sample(add_table(database, *folder, "orders"));
  auto single = std::make_unique<CWorkSheet>("single", std::vector{field("only", FieldType::kText)});
  expect(single->insert_records(1, 3));
  expect(single->set_value(2, 0, std::string("middle")));
  single = with_later_objects(*single, {{2, 1000, later}, {1000, 1, later}});
  expect(database.add_table(database.root(), single));
  Field changed = database.tables()[0]->field(1);
  changed.formula = "number * 2";
  changed.width = 77;
  changed.position = 3;
  changed.hidden = true;
  expect(database.tables()[0]->change_field(1, changed));
  expect(database.tables()[0]->add_search_key({"late übrig", {{0, "b:^[a-z]+$"}, {1, "h:1 5"}, {4, "m:2"}}}));
  expect(database.tables()[0]->add_search_key({"without fields", {}}));
  database.tables()[0]->change_arrangement({2, 1, 5});
  const ErrorCode error = DatabaseFile(database).save(path, {}, Options()).failure.error();
  return error == ErrorCode::kOk ? 0 : fail(path, error);
}

// State N: each cell says so.
void put_state(CWorkSheet& table, double n) {
  NumberColumn numbers;
  numbers.cells.assign(kRecords, n);
  expect(table.replace_column(1, table.field(1), std::move(numbers)));
  expect(table.set_value(1, 2, Content::of(std::string(100'000, 'x') + std::to_string(n))));
}

int save_loop(const std::string& path) {
  Options options;
  options.undo_level = 1;
  Database database("loop", options);
  DatabaseFile file(database);
  CWorkSheet* tables[] = {&add_table(database, database.root(), "a"),
                          &add_table(database, database.root(), "b")};
  for (CWorkSheet* table : tables) expect(table->insert_records(1, kRecords));
  for (double n = 1;; ++n) {
    for (CWorkSheet* table : tables) put_state(*table, n);
    const ErrorCode error = file.save(path, {}, Options()).failure.error();
    if (error != ErrorCode::kOk) return fail(path, error);
  }
}

int check(const std::string& path) {
  const OpenedDatabase opened = open_database(path, Options());
  if (opened.failure != ErrorCode::kOk) return fail(path, opened.failure.error());
  const std::vector<CWorkSheet*> tables = opened.database->tables();
  if (tables.size() != 2 || !opened.notices.empty()) return fail("tables", ErrorCode::kInvalidDatabase);
  const std::string state = tables[0]->value_text(1, 1);
  for (const CWorkSheet* table : tables) {
    if (table->record_count() != kRecords) return fail("records", ErrorCode::kInvalidDatabase);
    for (RecordNumber record = 1; record < table->end_record(); ++record) {
      if (table->value_text(record, 1) != state) return fail("state " + state, ErrorCode::kInvalidDatabase);
    }
    if (table->value_text(1, 2) != std::string(100'000, 'x') + std::to_string(std::stod(state))) {
      return fail("long text of state " + state, ErrorCode::kInvalidDatabase);
    }
  }
  std::printf("%s\n", state.c_str());
  return 0;
}

std::string hex(std::string_view bytes) {
  std::string text;
  for (const char c : bytes) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned char>(c));
    text += digits;
  }
  return text;
}

std::string bytes_of(const Content& content) {
  std::string bytes;
  expect(content.read(bytes));
  return hex(bytes);
}

std::string cell_text(const CellValue& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return "text " + hex(*text);
  if (const auto* content = std::get_if<Content>(&value)) return "content " + bytes_of(*content);
  if (const auto* number = std::get_if<double>(&value)) {
    const FormulaError error = error_of_number(*number);
    if (error != FormulaError::kNone) return "error " + std::string(formula_error_text(error));
    char text[40];
    std::snprintf(text, sizeof text, "number %016" PRIx64, std::bit_cast<uint64_t>(*number));
    return text;
  }
  std::string line = "empty";
  if (const auto* files = std::get_if<FileList>(&value)) {
    line = "files";
    for (const FileObject& file : *files) {
      line += " " + hex(file.name) + "/" + hex(file.shortcut) + "/" + bytes_of(file.content);
    }
  }
  return line;
}

void dump_field(const Field& one) {
  std::printf(" field %s type %d link %d encrypted %d hidden %d width %d position %d", hex(one.name).c_str(),
              static_cast<int>(one.type), one.link, one.encrypted, one.hidden, one.width, one.position);
  for (const std::string* text :
       {&one.formula, &one.validation, &one.default_value, &one.drop_down_list, &one.format}) {
    std::printf(" [%s]", hex(*text).c_str());
  }
  std::printf("\n");
}

std::shared_ptr<const Secret> password() {
  const char* const value = std::getenv("RVB_PASSWORD");
  return value != nullptr ? std::make_shared<const Secret>(value) : nullptr;
}

OpenedDatabase open(const std::string& path) {
  return open_database(path, Options(), nullptr, Progress::none(), password());
}

int protect(const std::string& path, const std::string& cipher, bool read_only_open) {
  const OpenedDatabase opened = open(path);
  if (opened.failure != ErrorCode::kOk) return fail(path, opened.failure.error());
  const auto algorithm = cipher_named(cipher);
  if (!algorithm) return fail(cipher, ErrorCode::kCryptographicKey);
  expect(opened.file->set_protection(Protection{password(), *algorithm, read_only_open}));
  const ErrorCode error = opened.file->save(path, {}, Options()).failure.error();
  return error == ErrorCode::kOk ? 0 : fail(path, error);
}

int dump(const std::string& path) {
  const OpenedDatabase opened = open(path);
  if (opened.failure != ErrorCode::kOk) return fail(path, opened.failure.error());
  for (const RecordFlagType& type : opened.database->settings().record_flag_types) {
    std::printf("flag type %s %06x\n", hex(type.name).c_str(), type.color);
  }
  for (const DropDownList& list : opened.database->settings().drop_down_lists) {
    std::printf("list %s", hex(list.name).c_str());
    for (const std::string& item : list.items) std::printf(" [%s]", hex(item).c_str());
    std::printf("\n");
  }
  for (const CWorkSheet* table : opened.database->tables()) {
    std::printf("table %s\n", hex(table->path()).c_str());
    for (const Field& one : table->data().fields) dump_field(one);
    for (const SearchKey& key : table->search_keys()) {
      std::printf(" search key %s", hex(key.name).c_str());
      for (const SearchExpression& expression : key.expressions) {
        std::printf(" %u:%s", unsigned{expression.field}, hex(expression.criterion).c_str());
      }
      std::printf("\n");
    }
    const GridArrangement& shown = table->arrangement();
    std::printf(" lines %d frozen %u %u\n", shown.lines, unsigned{shown.frozen_fields}, shown.frozen_records);
    for (RecordNumber record = 1; record < table->end_record(); ++record) {
      std::printf(" record %u flags %04x\n", record.number(), table->flags(record));
      for (size_t i = 0; i < table->field_count(); ++i) {
        std::printf("  %s\n", cell_text(table->value(record, i)).c_str());
      }
    }
  }
  return 0;
}

}  // namespace

int main(int count, char** arguments) {
  const std::string command = count >= 3 ? arguments[1] : "";
  if (count == 4 && command == "protect") return protect(arguments[2], arguments[3], false);
  if (count == 4 && command == "protect-read-only") return protect(arguments[2], arguments[3], true);
  if (command == "make") return make(arguments[2]);
  if (command == "save-loop") return save_loop(arguments[2]);
  if (command == "check") return check(arguments[2]);
  if (command == "dump") return dump(arguments[2]);
  std::fprintf(stderr,
               "usage: database_tool make|save-loop|check|dump FILE\n       database_tool "
               "protect|protect-read-only FILE CIPHER\n");
  return 2;
}
