#include "exchange/text/text_formatter.h"

#include <charconv>
#include <cmath>

#include "exchange/text/archived_cells.h"
#include "exchange/text/cell_writer.h"
#include "exchange/text/file_list_text.h"
#include "exchange/text/rendered_texts.h"

namespace rowvane {
namespace {

// All characters that a number or a formula error can have besides the decimal separator.
constexpr std::string_view kNumberCharacters = "0123456789+-eE#VALUE!NAME?REF!NULL!MEMORY!DATA!SYNTAX!";

enum class CellKind {
  kRenderedText,  // texts that repeat, each made once
  kText,
  kPlainNumber,  // numbers that need no quotes, padding or code page
  kNumber,
  kContent,
  kFiles,
  kArchived,  // names of members
  kLeftOut,
};

struct FieldLayout {
  CellKind kind = CellKind::kLeftOut;
  size_t field = 0;
  uint32_t width = 0;  // 0: neither padded nor cut
  std::string suffix;  // what follows the cell
  RenderedTexts rendered;
  const NumberColumn* numbers = nullptr;
  const TextColumn* texts = nullptr;
  const ContentColumn* contents = nullptr;
  const FilesColumn* files = nullptr;
};

std::string suffix_of(const TextFileSettings& settings, uint32_t width, bool last) {
  if (last) return "\r\n";
  if (settings.has_fixed_widths()) return width > 0 ? "" : "\t";
  return std::string(1, settings.is_separated() ? static_cast<char>(settings.separator) : '\t');
}

constexpr auto kDigitPairs = [] {
  std::array<char, 200> pairs{};
  for (size_t i = 0; i < 100; ++i) {
    pairs[2 * i] = static_cast<char>('0' + i / 10);
    pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
  }
  return pairs;
}();

char* put_pair(char* to, uint64_t number) {
  std::memcpy(to, &kDigitPairs[2 * number], 2);
  return to + 2;
}

char* put_one_or_two(char* to, uint64_t number) {
  if (number >= 10) return put_pair(to, number);
  *to = static_cast<char>('0' + number);
  return to + 1;
}

constexpr size_t kMaxIntegerText = 24;

char* put_integer(char* to, int64_t number) {
  uint64_t size = static_cast<uint64_t>(number);
  if (number < 0) {
    *to++ = '-';
    size = 0 - size;
  }
  if (size < 100) return put_one_or_two(to, size);
  if (size < 10'000) return put_pair(put_one_or_two(to, size / 100), size % 100);
  return std::to_chars(to, to + kMaxIntegerText - 1, size).ptr;
}

// True when NUMBER is an integer that is written without exponent and point; "-0" keeps its sign another way.
bool is_short_integer(double number, int64_t& integer) {
  if (!(std::abs(number) < 1e15)) return false;
  integer = static_cast<int64_t>(number);
  return static_cast<double>(integer) == number && (integer != 0 || !std::signbit(number));
}

// Empty for an empty cell.
void append_number_cell(double cell, const NumberSeparators& separators, std::string& out) {
  if (is_empty_number(cell)) return;
  const FormulaError error = error_of_number(cell);
  if (error == FormulaError::kNone) return append_number(cell, separators.decimal, out);
  out += formula_error_text(error);
}

}  // namespace

// What is the same for all lines.
struct TextFormatter::Layout {
  Layout(const CWorkSheet& source, const std::vector<size_t>& chosen, const TextFileSettings& settings,
         const TextDialect& text_dialect)
      : table(source), dialect(text_dialect), rules(settings, text_dialect.native, chosen.size()) {
    fields.resize(chosen.size());
    for (size_t i = 0; i < chosen.size(); ++i) {
      FieldLayout& field = fields[i];
      const bool has_width = settings.has_fixed_widths() && i < settings.fixed_widths.size();
      field.field = chosen[i];
      // The list ends at the first 0, whatever stands behind it.
      field.width = has_width && (i == 0 || fields[i - 1].width > 0) ? settings.fixed_widths[i] : 0;
      field.suffix = suffix_of(settings, field.width, i + 1 == chosen.size());
      choose_kind(field);
    }
  }

  void choose_kind(FieldLayout& field) const {
    const Column& column = table.column(field.field);
    field.numbers = std::get_if<NumberColumn>(&column);
    field.texts = std::get_if<TextColumn>(&column);
    field.contents = std::get_if<ContentColumn>(&column);
    field.files = std::get_if<FilesColumn>(&column);
    if (field.numbers != nullptr) {
      const bool plain = rules.leaves_plain(std::string(kNumberCharacters) + dialect.numbers.decimal);
      field.kind = plain ? CellKind::kPlainNumber : CellKind::kNumber;
    } else if (field.texts != nullptr) {
      field.kind = render_texts(field) ? CellKind::kRenderedText : CellKind::kText;
    } else if (dialect.archived != nullptr && dialect.archived->holds(field.field)) {
      field.kind = CellKind::kArchived;
    } else if (field.files != nullptr) {
      field.kind = CellKind::kFiles;
    } else {
      field.kind = dialect.native ? CellKind::kLeftOut : CellKind::kContent;
    }
  }

  // False when the cells are better made one by one: where texts don't repeat, and where some lose something,
  // because only those of the records written count.
  bool render_texts(FieldLayout& field) const {
    const TextPool& pool = *field.texts->pool;
    if (!RenderedTexts::are_worthwhile(pool, table.record_count(), field.width)) return false;
    field.rendered = RenderedTexts(pool, rules, field.width, field.suffix);
    if (!field.rendered.has_losses()) return true;
    field.rendered = RenderedTexts();
    return false;
  }

  const CWorkSheet& table;
  const TextDialect dialect;
  const CellRules rules;
  std::vector<FieldLayout> fields;
};

// Writes lines on one thread.
class TextFormatter::LineWriter {
 public:
  LineWriter(const TextFormatter& formatter, std::string& out)
      : formatter_(formatter), layout_(*formatter.layout_), output_(out), cells_(layout_.rules, output_) {}
  ~LineWriter() {
    if (cells_.has_cut()) formatter_.has_cut_cells_ = true;
    if (cells_.has_replaced()) formatter_.has_replaced_characters_ = true;
  }
  LineWriter(const LineWriter&) = delete;
  LineWriter& operator=(const LineWriter&) = delete;

  bool is_usable() const { return cells_.is_usable(); }

  void write_names() {
    for (const FieldLayout& field : layout_.fields) {
      cells_.write_text(layout_.table.field(field.field).name, field.width);
      output_.append(field.suffix);
    }
  }

  ErrorCode write_record(uint32_t position) {
    for (const FieldLayout& field : layout_.fields) {
      if (field.kind == CellKind::kRenderedText) {
        field.rendered.append(field.texts->cells[position], output_);
      } else if (field.kind == CellKind::kPlainNumber) {
        write_plain_number(field, field.numbers->cells[position]);
      } else {
        if (const auto error = write_cell(field, position); error != ErrorCode::kOk) return error;
        output_.append(field.suffix);
      }
    }
    return ErrorCode::kOk;
  }

 private:
  static constexpr size_t kMaxSuffix = 2;

  void write_plain_number(const FieldLayout& field, double cell) {
    int64_t integer;
    if (!is_short_integer(cell, integer)) {
      text_.clear();
      append_number_cell(cell, layout_.dialect.numbers, text_);
      output_.append(text_);
      return output_.append(field.suffix);
    }
    char* const end = put_integer(output_.reserve(kMaxIntegerText + kMaxSuffix), integer);
    // A std::string has a byte behind its last one, so there are always two to copy.
    static_assert(kMaxSuffix == 2);
    end[0] = field.suffix[0];
    end[1] = field.suffix[1];
    output_.advance(end + field.suffix.size());
  }

  ErrorCode write_cell(const FieldLayout& field, uint32_t position) {
    if (field.kind == CellKind::kText) {
      cells_.write_text(field.texts->text(position), field.width);
      return ErrorCode::kOk;
    }
    text_.clear();
    if (field.kind == CellKind::kNumber) {
      append_number_cell(field.numbers->cells[position], layout_.dialect.numbers, text_);
      cells_.write_number(text_, field.width);
      return ErrorCode::kOk;
    }
    const auto error = read_outside_value(field, position);
    if (error == ErrorCode::kOk) cells_.write_text(text_, field.width, kNoCellLimit);
    return error;
  }

  // Reads what the cell shows of a value outside the record to `text_`.
  ErrorCode read_outside_value(const FieldLayout& field, uint32_t position) {
    if (field.kind == CellKind::kContent) {
      const Content* content = field.contents->value(position);
      return content != nullptr ? content->read(text_) : ErrorCode::kOk;
    }
    if (field.kind == CellKind::kArchived) {
      layout_.dialect.archived->append_names(position, field.field, text_);
    } else if (field.kind == CellKind::kFiles) {
      const FileList* files = field.files->value(position);
      if (files != nullptr && layout_.dialect.native) append_file_list(*files, text_);
      if (files != nullptr && !layout_.dialect.native) append_file_names(*files, text_);
    }
    return ErrorCode::kOk;
  }

  const TextFormatter& formatter_;
  const Layout& layout_;
  TextOutput output_;
  CellWriter cells_;
  std::string text_;
};

TextFormatter::TextFormatter(const CWorkSheet& table, const std::vector<size_t>& fields,
                             const TextFileSettings& settings, const TextDialect& dialect)
    : layout_(std::make_unique<const Layout>(table, fields, settings, dialect)) {}

TextFormatter::~TextFormatter() = default;

void TextFormatter::append_names(std::string& out) const {
  LineWriter(*this, out).write_names();
}

ErrorCode TextFormatter::append_range(uint32_t first, uint32_t end, std::string& out) const {
  LineWriter lines(*this, out);
  if (!lines.is_usable()) return ErrorCode::kOutOfResources;
  for (uint32_t position = first; position < end; ++position) {
    if (const auto error = lines.write_record(position); error != ErrorCode::kOk) return error;
  }
  return ErrorCode::kOk;
}

ErrorCode TextFormatter::append_records(std::span<const uint32_t> positions, std::string& out) const {
  LineWriter lines(*this, out);
  if (!lines.is_usable()) return ErrorCode::kOutOfResources;
  for (const uint32_t position : positions) {
    if (const auto error = lines.write_record(position); error != ErrorCode::kOk) return error;
  }
  return ErrorCode::kOk;
}

}  // namespace rowvane
