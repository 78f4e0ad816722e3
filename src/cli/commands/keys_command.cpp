#include <cstdio>
#include <memory>

#include <CLI/CLI.hpp>

#include "cli/commands/commands.h"
#include "cli/json.h"
#include "cli/report.h"
#include "cli/session.h"
#include "cli/typed_criterion.h"
#include "recordset/search/search_keys.h"

namespace rowvane::cli {
namespace {

struct KeysArguments {
  std::string database;
  std::vector<std::string> words;  // [TABLE] [ACTION NAME ...]
  SaveOptions save;
  TextOptions text;
};

int read_expressions(const CWorkSheet& table, std::span<const std::string> typed,
                     std::vector<SearchExpression>& expressions) {
  Search search;
  for (const std::string& one : typed) {
    FieldCriterion& criterion = search.criteria.emplace_back();
    if (const int status = read_field_criterion(table, one, criterion); status != kDone) return status;
    expressions.push_back({static_cast<uint16_t>(criterion.field), stored_criterion(criterion.criterion)});
  }
  std::ranges::sort(expressions, {}, &SearchExpression::field);
  if (!are_valid_expressions(expressions, table.field_count()))
    return fail_usage("a key has one criterion a field");
  const Check check = check_search(table, search, FormulaSettings());
  return check.passes() ? kDone : fail(check.refusal);
}

int add_key(CWorkSheet& table, std::span<const std::string> words) {
  if (words.size() < 2) return fail_usage("keys add needs a name and at least one criterion");
  SearchKey key{words[0], {}};
  if (const Check check = check_search_key_name(table, key.name); !check.passes()) return fail(check.refusal);
  if (const int status = read_expressions(table, words.subspan(1), key.expressions); status != kDone)
    return status;
  CurrentSearchKey current;
  return report(add_search_key(table, std::move(key), current));
}

int change_key(CWorkSheet& table, size_t key, std::span<const std::string> criteria) {
  if (criteria.empty()) return fail_usage("keys change needs a name and at least one criterion");
  std::vector<SearchExpression> expressions;
  if (const int status = read_expressions(table, criteria, expressions); status != kDone) return status;
  return report(table.change_search_key(key, std::move(expressions)));
}

int rename_key(CWorkSheet& table, size_t key, std::span<const std::string> names, CurrentSearchKey& current) {
  if (names.size() != 1) return fail_usage("keys rename needs the name and the new name");
  const Check check = check_search_key_name(table, names[0], key);
  return check.passes() ? report(rename_search_key(table, names[0], current)) : fail(check.refusal);
}

int run_action(CWorkSheet& table, std::span<const std::string> words) {
  const std::string& action = words[0];
  if (action == "add") return add_key(table, words.subspan(1));
  if (action != "change" && action != "rename" && action != "delete") {
    return fail_usage("keys knows add, change, rename and delete, not \"" + action + "\"");
  }
  if (words.size() < 2) return fail_usage("keys " + action + " needs a name");
  CurrentSearchKey current{words[1]};
  const auto key = current.find(table);
  if (!key) return fail(texts::kIncorrectSearchKey);
  if (action == "change") return change_key(table, *key, words.subspan(2));
  if (action == "rename") return rename_key(table, *key, words.subspan(2), current);
  return report(delete_search_key(table, current));
}

void print_json(const CWorkSheet& table, const SearchKey& key) {
  std::string out = "{\"table\": ";
  append_json_string(table.path(), out);
  out += ", \"name\": ";
  append_json_string(key.name, out);
  out += ", \"criteria\": [";
  for (const SearchExpression& expression : key.expressions) {
    if (out.back() != '[') out += ", ";
    append_json_string(table.field(expression.field).name + ":" + expression.criterion, out);
  }
  std::printf("%s]}\n", out.c_str());
}

void print_keys(const CWorkSheet& table, bool json) {
  if (!json && !table.search_keys().empty()) std::printf("%s:\n", table.path().c_str());
  for (const size_t index : listed_search_keys(table, true)) {
    const SearchKey& key = table.search_keys()[index];
    if (json) {
      print_json(table, key);
      continue;
    }
    std::printf("  %s\n", key.name.c_str());
    for (const SearchExpression& expression : key.expressions) {
      std::printf("    %s:%s\n", table.field(expression.field).name.c_str(), expression.criterion.c_str());
    }
  }
}

int run_keys(const GlobalOptions& global, KeysArguments& arguments) {
  Session session(global);
  if (const int status = session.open(arguments.database, arguments.text); status != kDone) return status;
  if (arguments.words.empty()) {
    for (const CWorkSheet* table : session.database().tables()) print_keys(*table, global.json);
    return kDone;
  }
  CWorkSheet* table = session.take_table(arguments.words);
  if (table == nullptr) return kFailed;
  if (arguments.words.empty()) {
    print_keys(*table, global.json);
    return kDone;
  }
  const int status = run_action(*table, arguments.words);
  return status == kDone ? session.save(arguments.save) : status;
}

}  // namespace

void add_keys_command(CLI::App& app, CommandContext& context) {
  auto arguments = std::make_shared<KeysArguments>();
  CLI::App* command = app.add_subcommand("keys", "List, add, change, rename or delete search keys");
  command->footer(
      "A search key is a named, saved set of criteria; a criterion is FIELD:KIND:TEXT.\n\nExamples:\n  rvb "
      "keys "
      "shop.rvb\n  rvb keys shop.rvb products add 'cheap lamps' Name:i:lamp Price:g:50\n  rvb keys shop.rvb "
      "products "
      "change 'cheap lamps' Name:i:lamp Price:g:80\n  rvb keys shop.rvb products rename 'cheap lamps' "
      "lamps\n  rvb "
      "keys shop.rvb products delete lamps");
  command->add_option("DATABASE", arguments->database, "Database, or any file with tables (needs -o)")
      ->required();
  command->add_option(
      "TABLE ACTION NAME", arguments->words,
      "Path of the table (needed when there are several); add, change, rename or delete; the key, "
      "and its criteria or new name");
  arguments->save.add_to(*command);
  arguments->text.add_to(*command, true);
  command->callback([&context, arguments] {
    context.run = [&context, arguments] { return run_keys(context.global, *arguments); };
  });
}

}  // namespace rowvane::cli
