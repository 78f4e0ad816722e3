#include "recordset/search/search_keys.h"

#include <algorithm>
#include <numeric>

#include "core/database/database.h"
#include "platform/collation.h"

namespace rowvane {
namespace {

// CHANGE as an undo step of its own with CAPTION; a table without database has none.
template <typename Change>
ErrorCode as_step(CWorkSheet& table, std::string_view caption, const Change& change) {
  if (table.database() == nullptr) return change();
  const ChangeGroup group(*table.database(), std::string(caption));
  return change();
}

}  // namespace

std::optional<size_t> CurrentSearchKey::find(const CWorkSheet& table) const {
  return name.empty() ? std::nullopt : table.find_search_key(name);
}

std::vector<size_t> listed_search_keys(const CWorkSheet& table, bool sorted) {
  const auto& keys = table.search_keys();
  std::vector<size_t> listed(keys.size());
  std::iota(listed.begin(), listed.end(), size_t{0});
  if (!sorted) return listed;
  const auto collation = platform::Collation::open_for_user({});
  std::ranges::stable_sort(
      listed, [&](size_t a, size_t b) { return collation->compare(keys[a].name, keys[b].name) < 0; });
  return listed;
}

Check check_search_key_name(const CWorkSheet& table, std::string_view name, std::optional<size_t> own) {
  const auto taken = table.find_search_key(name);
  if (taken && taken != own) return texts::kSearchKeyExists;
  return is_valid_search_key_name(name) ? Check() : Check(texts::kSearchKeyNeedsName);
}

Check check_search_key(const CWorkSheet& table, std::optional<size_t> key) {
  const auto& keys = table.search_keys();
  const bool usable = key && *key < keys.size() && !keys[*key].expressions.empty() &&
                      are_valid_expressions(keys[*key].expressions, table.field_count());
  return usable ? Check() : Check(texts::kIncorrectSearchKey);
}

ErrorCode add_search_key(CWorkSheet& table, SearchKey key, CurrentSearchKey& current) {
  const std::string name = key.name;
  const ErrorCode error =
      as_step(table, texts::kAddSearchKeyTitle, [&] { return table.add_search_key(std::move(key)); });
  if (error == ErrorCode::kOk) current = {name, false};
  return error;
}

ErrorCode rename_search_key(CWorkSheet& table, std::string name, CurrentSearchKey& current) {
  const auto index = current.find(table);
  if (!index) return ErrorCode::kInvalidCacheIndex;
  const ErrorCode error =
      as_step(table, texts::kRenameSearchKeyTitle, [&] { return table.rename_search_key(*index, name); });
  if (error == ErrorCode::kOk) current.name = std::move(name);
  return error;
}

ErrorCode delete_search_key(CWorkSheet& table, CurrentSearchKey& current) {
  const auto index = current.find(table);
  if (!index) return ErrorCode::kInvalidCacheIndex;
  const ErrorCode error =
      as_step(table, "Delete Search Key", [&] { return table.delete_search_key(*index); });
  if (error == ErrorCode::kOk) current = {};
  return error;
}

std::vector<SearchExpression> choose_search_key(const CWorkSheet& table, size_t key,
                                                CurrentSearchKey& current) {
  const SearchKey& chosen = table.search_keys()[key];
  current = {chosen.name, false};
  return chosen.expressions;
}

ErrorCode start_or_finish_update(CWorkSheet& table, std::vector<SearchExpression> expressions,
                                 CurrentSearchKey& current) {
  const auto index = current.find(table);
  const bool finish = current.updating;
  current.updating = index && !finish;
  if (!index) return ErrorCode::kInvalidCacheIndex;
  if (!finish) return ErrorCode::kOk;
  return as_step(table, "Update Search Key",
                 [&] { return table.change_search_key(*index, std::move(expressions)); });
}

}  // namespace rowvane
