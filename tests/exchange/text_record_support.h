// Texts cut into records by each of the ways there are.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/text/text_block.h"
#include "exchange/text/text_pipeline.h"
#include "exchange/text/text_tokenizer.h"
#include "platform/utf8.h"

namespace rowvane {

using TextRecords = std::vector<std::vector<std::string>>;

// The whole text as one block.
inline TextRecords block_records(std::string_view text, const TextRules& rules) {
  TextBlock block;
  std::copy(text.begin(), text.end(), block.reserve(text.size()));
  block.set_size(text.size());
  block.tokenize(rules);
  TextRecords records(block.record_count());
  for (size_t i = 0; i < records.size(); ++i) {
    for (size_t column = 0; block.cell(i, column) != nullptr; ++column) {
      records[i].emplace_back(block.view(*block.cell(i, column)));
    }
  }
  return records;
}

// Piece by piece; `next_size` answers the size of the next piece.
template <typename NextSize>
TextRecords streamed_records(std::string_view text, const TextRules& rules, NextSize&& next_size) {
  TextRecords records;
  std::vector<std::string> record;
  TextTokenizer::Handler handler;
  handler.limit = [](size_t) { return size_t{1} << 20; };
  handler.cell = [&](size_t, std::string_view cell, bool) { record.emplace_back(cell); };
  handler.record_end = [&] {
    records.push_back(std::move(record));
    record.clear();
    return true;
  };
  TextTokenizer tokenizer(rules, handler);
  while (!text.empty()) {
    const size_t size = std::clamp<size_t>(next_size(), 1, text.size());
    tokenizer.feed(text.substr(0, size));
    text.remove_prefix(size);
  }
  tokenizer.finish();
  return records;
}

// Through the whole machinery, in blocks and pieces of these sizes, as a table of texts: all records are as
// long as the longest.
inline TextRecords loaded_records(std::string_view text, const TextRules& rules, const TextBlockSizes& sizes,
                                  int threads, size_t max_columns = kMaxImportColumns) {
  TextLoadPlan plan;
  plan.rules = rules;
  plan.names_row = false;
  plan.sizes = sizes;
  plan.threads = threads;
  plan.max_columns = max_columns;
  TextLoader loader(plan, text.size());
  const auto read = [&text](std::span<char> buffer) {
    const size_t count = text.copy(buffer.data(), buffer.size());
    text.remove_prefix(count);
    return count;
  };
  TextRecords records;
  if (load_text_stream(loader, plan, read) != ErrorCode::kOk) return records;
  const TableData data = loader.finish();
  records.resize(data.record_count);
  for (const Column& column : data.columns) {
    for (size_t i = 0; i < records.size(); ++i) records[i].emplace_back(std::get<TextColumn>(column).text(i));
  }
  return records;
}

// RECORDS as a table shows them: all as long as the longest, broken UTF-8 made readable.
inline TextRecords as_loaded(TextRecords records, size_t max_columns = kMaxImportColumns) {
  size_t columns = 1;
  for (const auto& record : records) columns = std::max(columns, record.size());
  for (auto& record : records) {
    record.resize(std::min(columns, max_columns));
    for (std::string& cell : record) cell = repair_utf8(cell);
  }
  return records;
}

}  // namespace rowvane
