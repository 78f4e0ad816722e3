// Records as lines of delimited or fixed-width text.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "core/table/work_sheet.h"
#include "core/values/number_text.h"
#include "exchange/text/text_file_settings.h"

namespace rowvane {

class ArchivedCells;

// What a text file holds of its table beyond the settings of the dialogs.
struct TextDialect {
  NumberSeparators numbers{};  // generic in database files, the user's in exported files
  // The tables of database files, which must read back to the same cells: control characters stay, texts with
  // leading blanks are quoted, and so is the empty cell of a record that has no other; the long texts and
  // codes, which are files of their own, are left out; files appear as file_list_text.h
  // says.
  bool native = false;
  // The cells that name members of an archive instead of showing their values; null: none. Not owned.
  const ArchivedCells* archived = nullptr;
};

// Formats records of one table. Const after construction and safe from several threads; the table must not
// change meanwhile.
//
// Cells are joined by the separator and each record ends with CR LF. While quoting is on, a cell is enclosed
// in the quoting symbol, and each such symbol in it doubled, when it holds the symbol, the separator, CR or
// LF. Without a separator ("(none)") a tab stands between the cells of a record, so that they can still be
// told apart.
//
// With fixed widths nothing is quoted and nothing stands between the cells: texts are padded with blanks on
// the right and cut to the width in characters, numbers are padded on the left and become "###" where they
// don't fit; line breaks become blanks. Cells behind the last width stand as they are, tabs between them.
//
// Long texts are written whole; of files, the names joined by "; ".
class TextFormatter {
 public:
  // FIELDS are the chosen fields in their order; SETTINGS have passed check_text_settings.
  TextFormatter(const CWorkSheet& table, const std::vector<size_t>& fields, const TextFileSettings& settings,
                const TextDialect& dialect);
  ~TextFormatter();
  TextFormatter(const TextFormatter&) = delete;
  TextFormatter& operator=(const TextFormatter&) = delete;

  // All append in the code page of the settings, where they have one (a value at most 8,166 bytes, long texts
  // whole), otherwise in UTF-8: the caller makes UTF-16 of it.

  // The line of field names.
  void append_names(std::string& out) const;
  // The records at positions FIRST to END - 1. kOk, or the error of a value that can't be read;
  // kOutOfResources when the system lacks the code page. OUT then has lines as far as they went.
  ErrorCode append_range(uint32_t first, uint32_t end, std::string& out) const;
  // The records at POSITIONS in that order.
  ErrorCode append_records(std::span<const uint32_t> positions, std::string& out) const;

  // What the lines appended so far have lost: the ends of cells too long for their width or for a code page;
  // characters that the code page lacks.
  bool has_cut_cells() const { return has_cut_cells_; }
  bool has_replaced_characters() const { return has_replaced_characters_; }

 private:
  struct Layout;
  class LineWriter;

  std::unique_ptr<const Layout> layout_;
  mutable std::atomic<bool> has_cut_cells_ = false;
  mutable std::atomic<bool> has_replaced_characters_ = false;
};

}  // namespace rowvane
