#include "cli/record_printer.h"

#include <algorithm>
#include <cstdio>
#include <optional>

#include "cli/json.h"
#include "core/values/number_text.h"
#include "exchange/text/text_formatter.h"
#include "formula/formats/number_format.h"
#include "platform/terminal.h"
#include "platform/text_width.h"
#include "platform/utf8.h"

namespace rowvane::cli {
namespace {

constexpr uint32_t kChunkRecords = 4096;
constexpr uint32_t kMeasuredRecords = 1000;  // decide the widths of a printed table
constexpr int kWidestColumn = 60;            // unless the output is wider than needed
constexpr int kNarrowestColumn = 4;
constexpr std::string_view kGap = "  ";
constexpr std::string_view kEllipsis = "\u2026";

// The position of the record that is printed as number INDEX, from 0.
uint32_t position_of(const PrintOptions& options, uint32_t index) {
  const uint32_t at = options.first + index;
  return options.records != nullptr ? (*options.records)[at] : at;
}

bool put(const std::string& text) {
  return std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
}

// Line ends and other control characters would break the columns.
std::string on_one_line(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; }, ' ');
  return text;
}

std::string cut_to_width(const std::string& text, int width) {
  if (platform::display_width(text) <= width) return text;
  std::string cut;
  for (size_t position = 0; position < text.size();) {
    const size_t start = position;
    next_character(text, position);
    const std::string longer = cut + text.substr(start, position - start);
    if (platform::display_width(longer) > width - 1) break;
    cut = longer;
  }
  return cut.append(kEllipsis);
}

class TablePrinter {
 public:
  TablePrinter(const CWorkSheet& table, const PrintOptions& options) : table_(table), options_(options) {
    const platform::RegionalSettings region = platform::user_regional_settings();
    const DisplayRegion display(region);
    for (const size_t field : options_.fields) {
      const bool is_number = table_.field(field).type == FieldType::kNumber;
      const std::string& code = table_.field(field).format;
      formats_.emplace_back(is_number && !code.empty()
                                ? std::optional<NumberFormat>(std::in_place, code, display)
                                : std::nullopt);
    }
    decimal_ = display.decimal;
    measure();
    fit();
  }

  void print() {
    std::string out;
    for (size_t i = 0; i < widths_.size(); ++i) append_cell(i, table_.field(options_.fields[i]).name, out);
    end_line(out);
    for (size_t i = 0; i < widths_.size(); ++i)
      append_cell(i, std::string(static_cast<size_t>(widths_[i]), '-'), out);
    end_line(out);
    for (uint32_t k = 0; k < options_.count; ++k) {
      for (size_t i = 0; i < widths_.size(); ++i) append_cell(i, cell_text(position_of(options_, k), i), out);
      end_line(out);
      if (k % kChunkRecords == kChunkRecords - 1) {
        if (!put(out)) return;
        out.clear();
      }
    }
    put(out);
  }

 private:
  bool is_number(size_t i) const { return table_.field(options_.fields[i]).type == FieldType::kNumber; }

  std::string cell_text(uint32_t position, size_t i) const {
    if (!is_number(i)) return on_one_line(table_.value_text(record_number(position), options_.fields[i]));
    const CellValue value = table_.value(record_number(position), options_.fields[i]);
    const auto* number = std::get_if<double>(&value);
    if (number == nullptr || error_of_number(*number) != FormulaError::kNone)
      return table_.value_text(record_number(position), options_.fields[i]);
    std::string text;
    if (formats_[i]) {
      formats_[i]->append(*number, text);
    } else {
      append_number(*number, decimal_, text);
    }
    return on_one_line(std::move(text));
  }

  void measure() {
    for (const size_t field : options_.fields)
      widths_.push_back(platform::display_width(table_.field(field).name));
    const uint32_t measured = std::min(options_.count, kMeasuredRecords);
    for (uint32_t k = 0; k < measured; ++k) {
      for (size_t i = 0; i < widths_.size(); ++i) {
        widths_[i] = std::max(widths_[i], platform::display_width(cell_text(position_of(options_, k), i)));
      }
    }
  }

  // Narrows the widest text columns until the table fits the terminal.
  void fit() {
    for (size_t i = 0; i < widths_.size(); ++i) {
      if (!is_number(i)) widths_[i] = std::min(widths_[i], kWidestColumn);
    }
    const auto terminal = platform::terminal_width();
    if (!terminal) return;
    int total = -static_cast<int>(kGap.size());
    for (const int width : widths_) total += width + static_cast<int>(kGap.size());
    for (; total > *terminal; --total) {
      size_t widest = widths_.size();
      for (size_t i = 0; i < widths_.size(); ++i) {
        if (!is_number(i) && (widest == widths_.size() || widths_[i] > widths_[widest])) widest = i;
      }
      if (widest == widths_.size() || widths_[widest] <= kNarrowestColumn) return;
      --widths_[widest];
    }
  }

  void append_cell(size_t i, const std::string& text, std::string& out) const {
    if (i > 0) out += kGap;
    const std::string shown = is_number(i) ? text : cut_to_width(text, widths_[i]);
    const int missing = std::max(0, widths_[i] - platform::display_width(shown));
    if (is_number(i)) out.append(static_cast<size_t>(missing), ' ');
    out += shown;
    if (!is_number(i)) out.append(static_cast<size_t>(missing), ' ');
  }

  static void end_line(std::string& out) {
    out.erase(out.find_last_not_of(' ') + 1);
    out += '\n';
  }

  const CWorkSheet& table_;
  const PrintOptions& options_;
  std::vector<std::optional<NumberFormat>> formats_;  // of the fields that have one
  std::string decimal_;                               // for numbers of the others
  std::vector<int> widths_;
};

ErrorCode print_csv(const CWorkSheet& table, const PrintOptions& options) {
  const TextFormatter formatter(table, options.fields, TextFileSettings(), TextDialect());
  std::string out;
  formatter.append_names(out);
  for (uint32_t k = 0; k < options.count; k += kChunkRecords) {
    RecordSet chunk;
    for (uint32_t i = k; i < std::min(k + kChunkRecords, options.count); ++i)
      chunk.push_back(position_of(options, i));
    if (const ErrorCode error = formatter.append_records(chunk, out); error != ErrorCode::kOk) return error;
    if (!put(out)) return ErrorCode::kOk;
    out.clear();
  }
  put(out);
  return ErrorCode::kOk;
}

void print_json(const CWorkSheet& table, const PrintOptions& options) {
  std::vector<std::string> keys;
  for (const size_t field : options.fields) {
    append_json_string(table.field(field).name, keys.emplace_back());
    keys.back() += ": ";
  }
  std::string prefix;
  if (options.with_path) {
    prefix = "{\"table\": ";
    append_json_string(table.path(), prefix);
    prefix += ", \"record\": ";
  }
  std::string out;
  for (uint32_t k = 0; k < options.count; ++k) {
    out += prefix + '{';
    for (size_t i = 0; i < keys.size(); ++i) {
      if (i > 0) out += ", ";
      out += keys[i];
      append_json_value(table, record_number(position_of(options, k)), options.fields[i], out);
    }
    out += options.with_path ? "}}\n" : "}\n";
    if (k % kChunkRecords == kChunkRecords - 1) {
      if (!put(out)) return;
      out.clear();
    }
  }
  put(out);
}

}  // namespace

ErrorCode print_records(const CWorkSheet& table, const PrintOptions& options) {
  if (options.with_path && options.format != PrintFormat::kJson && !put(table.path() + ":\n"))
    return ErrorCode::kOk;
  switch (options.format) {
    case PrintFormat::kCsv:
      return print_csv(table, options);
    case PrintFormat::kJson:
      print_json(table, options);
      break;
    case PrintFormat::kTable:
      TablePrinter(table, options).print();
      break;
  }
  return ErrorCode::kOk;
}

}  // namespace rowvane::cli
