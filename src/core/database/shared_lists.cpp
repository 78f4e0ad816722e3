#include "core/database/shared_lists.h"

#include <algorithm>
#include <map>
#include <set>

#include "core/messages/messages.h"
#include "platform/characters.h"

namespace rowvane {
namespace {

template <typename Entry>
Check check_names(const std::vector<EditedEntry<Entry>>& all) {
  std::set<std::string> names;
  for (const auto& each : all) {
    const std::string& name = each.entry.name;
    if (name.find_first_not_of(' ') == std::string::npos) return "Please enter a name.";
    if (!names.insert(platform::fold_case(name)).second)
      return "There is another \"" + name + "\" already. Please enter a unique name.";
  }
  return {};
}

template <typename Entry>
std::vector<Entry> entries_of(const std::vector<EditedEntry<Entry>>& all) {
  std::vector<Entry> entries;
  for (const auto& each : all) entries.push_back(each.entry);
  return entries;
}

ErrorCode follow_lists(CWorkSheet& table, const std::map<std::string, std::string>& now) {
  for (size_t i = 0; i < table.field_count(); ++i) {
    const auto found = now.find(platform::fold_case(table.field(i).drop_down_list));
    if (found == now.end()) continue;
    Field field = table.field(i);
    field.drop_down_list = found->second;
    if (const auto error = table.change_field(i, std::move(field)); error != ErrorCode::kOk) return error;
  }
  return ErrorCode::kOk;
}

using Positions = std::vector<uint32_t>;

// The records of TABLE that have each type.
std::vector<Positions> flagged_records(const CWorkSheet& table) {
  std::vector<Positions> records(kMaxRecordFlagTypes + 1);
  for (uint32_t i = 0; i < table.data().flags.size(); ++i) {
    const auto type = static_cast<size_t>(table.flag_type(record_number(i)));
    if (type > 0 && type < records.size()) records[type].push_back(i);
  }
  return records;
}

}  // namespace

Check check_drop_down_lists(const EditedDropDownLists& lists) {
  if (lists.size() > kMaxDropDownLists) return ErrorCode::kTooManyDropDownLists;
  return check_names(lists);
}

Check check_record_flag_types(const EditedFlagTypes& types) {
  Check check = check_record_flag_types(types.size());
  return check.passes() ? check_names(types) : check;
}

ErrorCode change_drop_down_lists(Database& database, const EditedDropDownLists& lists) {
  const std::vector<DropDownList> former = database.settings().drop_down_lists;
  std::map<std::string, std::string> now;  // names of former lists that are other ones, or none
  for (const DropDownList& list : former) now[platform::fold_case(list.name)] = {};
  for (const auto& each : lists) {
    if (each.former) now[platform::fold_case(former[*each.former].name)] = each.entry.name;
  }
  ChangeGroup step(database, "Drop-Down Lists");
  DatabaseSettings settings = database.settings();
  settings.drop_down_lists = entries_of(lists);
  ErrorCode error = database.change_settings(std::move(settings));
  for (CWorkSheet* table : database.tables()) {
    if (error == ErrorCode::kOk) error = follow_lists(*table, now);
  }
  if (error != ErrorCode::kOk) step.roll_back();
  return error;
}

ErrorCode change_record_flag_types(Database& database, const EditedFlagTypes& types) {
  std::vector<int> now(kMaxRecordFlagTypes + 1, 0);  // the new number of each type
  for (size_t i = 0; i < types.size(); ++i) {
    if (types[i].former) now[*types[i].former + 1] = static_cast<int>(i + 1);
  }
  ChangeGroup step(database, "Record Flag Types");
  const std::vector<CWorkSheet*> tables = database.tables();
  std::vector<std::vector<Positions>> records;
  for (const CWorkSheet* table : tables) records.push_back(flagged_records(*table));
  DatabaseSettings settings = database.settings();
  settings.record_flag_types = entries_of(types);
  ErrorCode error = database.change_settings(std::move(settings));
  for (size_t t = 0; t < tables.size(); ++t) {
    for (size_t type = 1; type < now.size() && error == ErrorCode::kOk; ++type) {
      if (now[type] != static_cast<int>(type) && !records[t][type].empty())
        error = tables[t]->set_flag_type(records[t][type], now[type]);
    }
  }
  if (error != ErrorCode::kOk) step.roll_back();
  return error;
}

}  // namespace rowvane
