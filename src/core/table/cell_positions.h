// Taking cells out of an array and putting them in, at many positions in one pass.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

namespace rowvane {

// Takes the cells at POSITIONS, which ascend, out, moving the runs between them down.
template <typename Cells>
void erase_positions(Cells& cells, std::span<const uint32_t> positions) {
  if (positions.empty()) return;
  auto out = cells.begin() + positions[0];
  for (size_t i = 0; i < positions.size(); ++i) {
    const auto from = cells.begin() + positions[i] + 1;
    const auto to = i + 1 < positions.size() ? cells.begin() + positions[i + 1] : cells.end();
    out = std::copy(from, to, out);
  }
  cells.resize(static_cast<size_t>(out - cells.begin()));
}

// The inverse: puts NEW_CELLS in so that they stand at POSITIONS, which ascend, afterwards.
template <typename Cells>
void insert_positions(Cells& cells, std::span<const uint32_t> positions, const Cells& new_cells) {
  size_t from = cells.size();
  cells.resize(cells.size() + positions.size());
  size_t to = cells.size();
  for (size_t i = positions.size(); i-- > 0;) {
    while (to - 1 > positions[i]) cells[--to] = cells[--from];
    cells[--to] = new_cells[i];
  }
}

}  // namespace rowvane
