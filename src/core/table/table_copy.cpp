#include "core/table/table_copy.h"

#include <vector>

namespace rowvane {
namespace {

// What a folder holds before anything is added: the copy may come to lie within its original.
struct FolderContent {
  std::string name;
  std::vector<FolderContent> folders;
  std::vector<const CWorkSheet*> tables;
};

FolderContent content_of(const Folder& folder) {
  FolderContent content;
  content.name = folder.name();
  for (const auto& inner : folder.folders()) content.folders.push_back(content_of(*inner));
  for (const auto& table : folder.tables()) content.tables.push_back(table.get());
  return content;
}

ErrorCode add_copy(Database& database, const CWorkSheet& table, Folder& target, CWorkSheet** copy) {
  auto added = std::make_unique<CWorkSheet>(database.free_name(target, table.name()), table.data());
  if (copy != nullptr) *copy = added.get();
  return database.add_table(target, added);
}

ErrorCode add_copies(Database& database, const FolderContent& content, Folder& target, Folder** copy) {
  Folder* added = nullptr;
  ErrorCode error = database.add_folder(target, database.free_name(target, content.name), &added);
  if (copy != nullptr) *copy = added;
  for (const FolderContent& inner : content.folders) {
    if (error == ErrorCode::kOk) error = add_copies(database, inner, *added, nullptr);
  }
  for (const CWorkSheet* table : content.tables) {
    if (error == ErrorCode::kOk) error = add_copy(database, *table, *added, nullptr);
  }
  return error;
}

}  // namespace

ErrorCode copy_table(Database& database, const CWorkSheet& table, Folder& target, CWorkSheet** copy) {
  const ChangeGroup step(database, "Copy Table");
  return add_copy(database, table, target, copy);
}

ErrorCode copy_folder(Database& database, const Folder& source, Folder& target, Folder** copy) {
  if (source.parent() == nullptr) return ErrorCode::kInvalidPath;
  ChangeGroup step(database, "Copy Folder");
  const ErrorCode error = add_copies(database, content_of(source), target, copy);
  if (error != ErrorCode::kOk) step.roll_back();
  return error;
}

}  // namespace rowvane
