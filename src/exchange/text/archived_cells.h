// Values that an export puts into archives beside the text file, and the cells that tell where they are.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/table/work_sheet.h"

namespace rowvane {

class ZipWriter;

// A value of a long text or files field becomes members named as in database files
// (core/database/binary_names.h). Its cell holds the names of the members joined by "; ". A shortcut has no
// member; its cell holds its path.
class ArchivedCells {
 public:
  // The files fields of TABLE where FILES, and its long text and code fields where LONG_TEXTS. NAME is that
  // of the text file.
  ArchivedCells(const CWorkSheet& table, std::string name, bool files, bool long_texts);

  bool holds_files(size_t field) const { return files_ && table_.field(field).type == FieldType::kFiles; }
  bool holds_long_texts(size_t field) const;
  bool holds(size_t field) const { return holds_files(field) || holds_long_texts(field); }

  // Adds the members of one cell to ARCHIVE. Positions are 0-based.
  ErrorCode archive(uint32_t position, size_t field, ZipWriter& archive);
  // Appends the text of a cell; a long text must have been archived before.
  void append_names(uint32_t position, size_t field, std::string& out) const;

 private:
  ErrorCode archive_text(uint32_t position, size_t field, ZipWriter& archive);
  ErrorCode archive_files(uint32_t position, size_t field, ZipWriter& archive);

  std::string folder_of(uint32_t position, size_t field) const;

  const CWorkSheet& table_;
  std::string name_;
  bool files_;
  bool long_texts_;
  std::vector<std::vector<bool>> rich_texts_;  // by field and by reference of the value
};

}  // namespace rowvane
