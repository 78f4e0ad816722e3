#include "exchange/text/text_loader.h"

#include <algorithm>

#include "core/database/names.h"
#include "core/values/number_cell.h"

namespace rowvane {

struct TextLoader::LoadedColumn {
  enum class State : uint8_t { kUnknown, kNumbers, kTexts, kContents };

  State state = State::kUnknown;
  bool to_reload = false;
  NumberColumn numbers;
  TextColumn texts;
  ContentColumn contents;
  size_t non_empty = 0;             // texts added so far
  std::vector<TextPool::Code> map;  // scratch: codes of the block to codes of the column
};

void LoadJob::clear() {
  block.clear();
  tokenized = false;
  findings = {};
}

TextLoader::TextLoader(const TextLoadPlan& plan, uint64_t text_bytes)
    : plan_(plan), text_bytes_(text_bytes) {}

TextLoader::~TextLoader() = default;

size_t TextLoader::heading_records(const LoadJob& job) const {
  return plan_.names_row && job.index == 0 && job.block.record_count() > 0 ? 1 : 0;
}

void TextLoader::parse(LoadJob& job, BlockReader& reader) const {
  if (!job.tokenized) job.block.tokenize(plan_.rules);
  job.tokenized = true;
  const size_t first = heading_records(job);
  const size_t columns = std::min(job.block.column_count(), plan_.max_columns);
  for (BlockColumn& column : job.columns) column.clear();
  if (job.columns.size() < columns) job.columns.resize(columns);
  for (size_t i = 0; i < columns; ++i) reader.read(job.block, first, i, job.columns[i]);
  job.findings = reader.take_findings();
  if (job.block.has_cut_cells) job.findings.cut_cells = true;
}

std::vector<std::unique_ptr<LoadJob>> TextLoader::merge(std::unique_ptr<LoadJob> job, BlockReader& reader) {
  const std::lock_guard lock(mutex_);
  const uint64_t index = job->index;
  waiting_.emplace(index, std::move(job));
  std::vector<std::unique_ptr<LoadJob>> done;
  while (!waiting_.empty() && waiting_.begin()->first == next_) {
    done.push_back(std::move(waiting_.begin()->second));
    waiting_.erase(waiting_.begin());
    merge_in_order(*done.back(), reader);
    ++next_;
  }
  return done;
}

void TextLoader::add_column() {
  columns_.push_back(std::make_unique<LoadedColumn>());
}

void TextLoader::take_names(const TextBlock& block, BlockReader& reader) {
  for (size_t i = 0; i < columns_.size(); ++i) {
    const TextBlock::Cell* cell = block.cell(0, i);
    names_.push_back(cell != nullptr ? reader.decode(block.view(*cell)) : std::string());
  }
}

void TextLoader::reserve(const LoadJob& job, size_t records) {
  if (job.block.size() == 0) return;
  const double share = static_cast<double>(text_bytes_) / static_cast<double>(job.block.size());
  const double expected = static_cast<double>(records) * share * 1.02 + 1024;
  expected_records_ = static_cast<size_t>(std::min(expected, static_cast<double>(plan_.max_records)));
}

// The records that there is no room for leave no trace: neither columns nor types nor notices come from them.
void TextLoader::drop_overflow(LoadJob& job, BlockReader& reader) {
  const size_t records = job.block.record_count() - heading_records(job);
  const size_t room = plan_.max_records - records_;
  if (records <= room) return;
  too_many_records_ = true;
  full_ = true;
  job.block.keep_records(heading_records(job) + room);
  parse(job, reader);
}

void TextLoader::merge_in_order(LoadJob& job, BlockReader& reader) {
  if (full_) return;
  drop_overflow(job, reader);
  const TextBlock& block = job.block;
  const size_t columns = std::min(block.column_count(), plan_.max_columns);
  too_many_columns_ = too_many_columns_ || block.column_count() > plan_.max_columns;
  while (columns_.size() < columns) add_column();
  const size_t first = heading_records(job);
  if (first > 0) take_names(block, reader);
  const size_t records = block.record_count() - first;
  if (job.index == 0) reserve(job, records);
  for (size_t i = 0; i < columns && records > 0; ++i)
    add_block(i, job.columns[i], job, first, records, reader);
  records_ += static_cast<uint32_t>(records);
  findings_.add(job.findings);
  findings_.add(reader.take_findings());
}

namespace {

// Fills CELLS up to SIZE.
template <typename Cells>
void pad(Cells& cells, size_t size, typename Cells::value_type empty) {
  if (cells.size() < size) cells.resize(size, empty);
}

constexpr size_t kDistinctSample =
    32'768;  // texts seen before a column may count as one whose texts do not repeat

}  // namespace

void TextLoader::add_block(size_t index, BlockColumn& column, const LoadJob& job, size_t first,
                           size_t records, BlockReader& reader) {
  using State = LoadedColumn::State;
  LoadedColumn& loaded = *columns_[index];
  if (column.kind == BlockColumn::Kind::kNumbers && loaded.state == State::kTexts) {
    // Read as numbers before the cell that is none had been seen.
    column.clear();
    reader.read_texts(job.block, first, index, column);
  }
  switch (column.kind) {
    case BlockColumn::Kind::kEmpty:
      return;
    case BlockColumn::Kind::kNumbers:
      loaded.state = State::kNumbers;
      loaded.numbers.cells.reserve(expected_records_);
      pad(loaded.numbers.cells, records_, kEmptyNumber);
      loaded.numbers.cells.insert(loaded.numbers.cells.end(), column.numbers.begin(),
                                  column.numbers.begin() + static_cast<std::ptrdiff_t>(records));
      return;
    case BlockColumn::Kind::kTexts:
      if (loaded.state == State::kNumbers) {
        loaded.to_reload = true;
        loaded.numbers = {};
      }
      loaded.state = State::kTexts;
      hints_.text[index].store(true, std::memory_order_relaxed);
      return add_texts(index, column, records);
    case BlockColumn::Kind::kContents:
      loaded.state = State::kContents;
      pad(loaded.contents.cells, records_, 0);
      for (size_t i = 0; i < records; ++i) {
        Content& content = column.contents[i];
        loaded.contents.cells.push_back(content.empty() ? 0 : loaded.contents.add(std::move(content)));
      }
      return;
  }
}

void TextLoader::add_texts(size_t index, const BlockColumn& column, size_t records) {
  LoadedColumn& loaded = *columns_[index];
  TextColumn& texts = loaded.texts;
  texts.cells.reserve(expected_records_);
  pad(texts.cells, records_, 0);
  texts.cells.resize(records_ + records);
  if (column.interned && !texts.interning) {
    add_distinct(loaded, column, records);
  } else {
    add_repeating(loaded, column, records);
  }
  if (texts.interning && loaded.non_empty >= kDistinctSample && texts.pool->size() > loaded.non_empty / 2) {
    texts.interning = false;
    texts.pool->drop_index();
    hints_.distinct[index].store(true, std::memory_order_relaxed);
  }
}

// One code for each text of the block.
void TextLoader::add_repeating(LoadedColumn& loaded, const BlockColumn& column, size_t records) {
  loaded.map.resize(column.pool.size());
  for (TextPool::Code code = 0; code < loaded.map.size(); ++code) {
    loaded.map[code] = loaded.texts.code_for(column.text(code));
  }
  TextPool::Code* out = loaded.texts.cells.data() + records_;
  for (size_t i = 0; i < records; ++i) {
    out[i] = loaded.map[column.codes[i]];
    loaded.non_empty += out[i] != 0;
  }
}

// For a block that was read before the texts were known not to repeat: gives the codes that it would have
// had.
void TextLoader::add_distinct(LoadedColumn& loaded, const BlockColumn& column, size_t records) {
  TextPool::Code* out = loaded.texts.cells.data() + records_;
  for (size_t i = 0; i < records; ++i) {
    const bool again = i > 0 && column.codes[i] == column.codes[i - 1];
    out[i] = again ? out[i - 1] : loaded.texts.code_for(column.text(column.codes[i]));
  }
}

std::vector<UserText> TextLoader::notices() const {
  std::vector<UserText> notices;
  if (too_many_records_) notices.emplace_back(MessageId::kTooManyRecordsInFile);
  if (too_many_columns_) notices.emplace_back(MessageId::kTooManyColumnsInFile);
  if (findings_.cut_cells) notices.emplace_back(MessageId::kCellsTruncated);
  if (findings_.not_numeric) notices.emplace_back(MessageId::kTextNotNumeric);
  if (findings_.invalid_utf8) notices.emplace_back(ErrorCode::kInvalidUtf8);
  return notices;
}

std::vector<size_t> TextLoader::columns_to_reload() const {
  std::vector<size_t> columns;
  for (size_t i = 0; i < columns_.size(); ++i) {
    if (columns_[i]->to_reload) columns.push_back(i);
  }
  return columns;
}

void TextLoader::take_columns(TextLoader& other, const std::vector<size_t>& columns) {
  for (const size_t index : columns) {
    if (index < other.columns_.size()) columns_[index] = std::move(other.columns_[index]);
  }
  findings_.add(other.findings_);
}

TableData TextLoader::finish() {
  using State = LoadedColumn::State;
  TableData data;
  data.record_count = records_;
  std::vector<std::string> names;
  for (size_t i = 0; i < std::max<size_t>(columns_.size(), 1); ++i) {
    if (i == columns_.size()) add_column();
    const ColumnLoad load = plan_.column(i).load;
    if (load == ColumnLoad::kSkip) continue;
    LoadedColumn& loaded = *columns_[i];
    Field field;
    if (load == ColumnLoad::kLongText) {
      field.type = FieldType::kLongText;
      data.columns.emplace_back(std::move(loaded.contents));
    } else if (loaded.state == State::kNumbers || load == ColumnLoad::kNumber ||
               load == ColumnLoad::kStoredNumber) {
      field.type = FieldType::kNumber;
      data.columns.emplace_back(std::move(loaded.numbers));
    } else {
      loaded.texts.pool->drop_index();
      data.columns.emplace_back(std::move(loaded.texts));
    }
    resize_column(data.columns.back(), records_);
    field.position = static_cast<uint16_t>(data.fields.size());
    names.push_back(repair_field_name(i < names_.size() ? names_[i] : std::string(), i + 1));
    data.fields.push_back(std::move(field));
  }
  make_names_unique(names);
  for (size_t i = 0; i < names.size(); ++i) data.fields[i].name = std::move(names[i]);
  return data;
}

}  // namespace rowvane
