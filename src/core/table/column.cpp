#include "core/table/column.h"

#include <algorithm>
#include <type_traits>

#include "core/table/cell_positions.h"

namespace rowvane {
namespace {

template <typename... Callables>
struct Overloaded : Callables... {
  using Callables::operator()...;
};
// Clang needs this up to version 16.
template <typename... Callables>
Overloaded(Callables...) -> Overloaded<Callables...>;

// Calls `use` with the cells of any kind of column and the cell that means empty.
template <typename AnyColumn, typename Use>
decltype(auto) with_cells(AnyColumn& column, Use&& use) {
  return std::visit(
      [&use](auto& kind) -> decltype(auto) {
        using Cell = typename std::remove_cvref_t<decltype(kind.cells)>::value_type;
        if constexpr (std::is_same_v<Cell, double>) {
          return use(kind.cells, kEmptyNumber);
        } else {
          return use(kind.cells, Cell{0});
        }
      },
      column);
}

}  // namespace

TextPool::Code TextColumn::code_for(std::string_view text) {
  return interning ? pool->intern(text) : pool->append(text);
}

template <typename Value>
void ReferenceColumn<Value>::compact() {
  std::vector<uint32_t> moved(values.size() + 1, 0);
  std::vector<Value> kept;
  for (uint32_t& cell : cells) {
    if (cell == 0) continue;
    if (moved[cell] == 0) {
      kept.push_back(std::move(values[cell - 1]));
      moved[cell] = static_cast<uint32_t>(kept.size());
    }
    cell = moved[cell];
  }
  values = std::move(kept);
}

size_t column_size(const Column& column) {
  return with_cells(column, [](const auto& cells, auto) { return cells.size(); });
}

void resize_column(Column& column, size_t size) {
  with_cells(column, [size](auto& cells, auto empty) { cells.resize(size, empty); });
}

void insert_cells(Column& column, size_t position, size_t count) {
  with_cells(column, [=](auto& cells, auto empty) {
    cells.insert(cells.begin() + static_cast<std::ptrdiff_t>(position), count, empty);
  });
}

void erase_cells(Column& column, std::span<const uint32_t> positions) {
  with_cells(column, [positions](auto& cells, auto) { erase_positions(cells, positions); });
  if (auto* texts = std::get_if<TextColumn>(&column)) texts->dropped += positions.size();
}

CellValue cell_value(const Column& column, size_t position) {
  return std::visit(Overloaded{[=](const NumberColumn& numbers) {
                                 const double number = numbers.cells[position];
                                 return is_empty_number(number) ? CellValue() : CellValue(number);
                               },
                               [=](const TextColumn& texts) {
                                 return texts.cells[position] == 0
                                            ? CellValue()
                                            : CellValue(std::string(texts.text(position)));
                               },
                               [=](const auto& references) {
                                 const auto* value = references.value(position);
                                 return value == nullptr ? CellValue() : CellValue(*value);
                               }},
                    column);
}

void store_value(Column& column, size_t position, const CellValue& value) {
  std::visit(Overloaded{[&](NumberColumn& numbers) {
                          const double* number = std::get_if<double>(&value);
                          numbers.cells[position] = number != nullptr ? *number : kEmptyNumber;
                        },
                        [&](TextColumn& texts) {
                          const auto* text = std::get_if<std::string>(&value);
                          texts.cells[position] = text != nullptr ? texts.code_for(*text) : 0;
                          ++texts.dropped;
                        },
                        [&](ContentColumn& contents) {
                          const auto* content = std::get_if<Content>(&value);
                          contents.cells[position] =
                              content != nullptr && !content->empty() ? contents.add(*content) : 0;
                        },
                        [&](FilesColumn& files) {
                          const auto* list = std::get_if<FileList>(&value);
                          files.cells[position] = list != nullptr && !list->empty() ? files.add(*list) : 0;
                        }},
             column);
}

bool fits_column(const Column& column, const CellValue& value) {
  // The kinds of values stand in the order of the kinds of columns, after the empty one.
  return is_empty(value) || value.index() == column.index() + 1;
}

Column select_cells(const Column& column, std::span<const uint32_t> positions) {
  return std::visit(
      [positions](const auto& source) -> Column {
        auto selected = std::remove_cvref_t<decltype(source)>();
        selected.cells.resize(positions.size());
        for (size_t i = 0; i < positions.size(); ++i) {
          if constexpr (requires { source.values; }) {
            const auto* value = source.value(positions[i]);
            selected.cells[i] = value == nullptr ? 0 : selected.add(*value);
          } else {
            selected.cells[i] = source.cells[positions[i]];
          }
        }
        if constexpr (requires { source.pool; }) {
          selected.pool = source.pool;
          selected.interning = source.interning;
        }
        return selected;
      },
      column);
}

namespace {

// The cells of SOURCE as they read in TARGET, whose pool or values may be others.
NumberColumn::Cells adopt_cells(NumberColumn&, const NumberColumn& source) {
  return source.cells;
}

TextColumn::Cells adopt_cells(TextColumn& target, const TextColumn& source) {
  if (source.pool == target.pool) return source.cells;
  TextColumn::Cells cells(source.cells.size());
  for (size_t i = 0; i < cells.size(); ++i) cells[i] = target.code_for(source.text(i));
  return cells;
}

template <typename Value>
auto adopt_cells(ReferenceColumn<Value>& target, const ReferenceColumn<Value>& source) {
  auto cells = source.cells;
  for (size_t i = 0; i < cells.size(); ++i) {
    const Value* value = source.value(i);
    cells[i] = value == nullptr ? 0 : target.add(*value);
  }
  return cells;
}

}  // namespace

void assign_cells(Column& column, std::span<const uint32_t> positions, const Column& cells) {
  std::visit(
      [&](auto& target) {
        const auto adopted = adopt_cells(target, std::get<std::remove_cvref_t<decltype(target)>>(cells));
        for (size_t i = 0; i < positions.size(); ++i) target.cells[positions[i]] = adopted[i];
        if constexpr (requires { target.dropped; }) target.dropped += positions.size();
      },
      column);
}

void restore_cells(Column& column, std::span<const uint32_t> positions, const Column& cells) {
  std::visit(
      [&](auto& target) {
        const auto adopted = adopt_cells(target, std::get<std::remove_cvref_t<decltype(target)>>(cells));
        insert_positions(target.cells, positions, adopted);
      },
      column);
}

namespace {

void clean_texts(TextColumn& texts) {
  if (texts.dropped * 2 < texts.pool->size()) return;  // each dropped cell left at most one text behind
  texts.dropped = 0;
  std::vector<TextPool::Code> moved(texts.pool->size(), 0);
  size_t used = 0;
  for (const TextPool::Code code : texts.cells) {
    if (code != 0 && moved[code] == 0) {
      moved[code] = 1;
      ++used;
    }
  }
  if (used * 2 >= texts.pool->size()) return;
  auto pool = std::make_shared<TextPool>();
  for (TextPool::Code code = 1; code < moved.size(); ++code) {
    if (moved[code] == 0) continue;
    const std::string_view text = texts.pool->text(code);
    moved[code] = texts.interning ? pool->intern(text) : pool->append(text);
  }
  for (TextPool::Code& code : texts.cells) code = moved[code];
  texts.pool = std::move(pool);
}

}  // namespace

void clean_pool(Column& column) {
  std::visit(Overloaded{[](NumberColumn&) {}, [](TextColumn& texts) { clean_texts(texts); },
                        [](auto& references) { references.compact(); }},
             column);
}

uint64_t memory_bytes(const Column& column) {
  const uint64_t cells = with_cells(column, [](const auto& all, auto empty) {
    return static_cast<uint64_t>(all.capacity()) * sizeof(empty);
  });
  const auto* texts = std::get_if<TextColumn>(&column);
  return cells + (texts != nullptr ? texts->pool->memory_bytes() : 0);
}

template struct ReferenceColumn<Content>;
template struct ReferenceColumn<FileList>;

}  // namespace rowvane
