#include "ui/grid/grid_layout.h"

#include <algorithm>

#include "recordset/find/shown_texts.h"

namespace rowvane {
namespace {

constexpr int64_t kFarAway = 1'000'000'000;

int near(int64_t pixel) {
  return static_cast<int>(std::clamp(pixel, -kFarAway, kFarAway));
}

}  // namespace

void GridLayout::set_fields(const CWorkSheet& table, int zoom) {
  fields_.clear();
  places_.assign(table.field_count(), -1);
  edges_.assign(1, 0);
  for (const size_t field : shown_fields(table)) {
    places_[field] = place_count();
    fields_.push_back(static_cast<int>(field));
    edges_.push_back(edges_.back() + std::max(table.field(field).width * zoom / 100, 4));
  }
}

void GridLayout::set_width(int place, int pixels) {
  const int more = pixels - width(place);
  for (auto edge = edges_.begin() + place + 1; edge != edges_.end(); ++edge) *edge += more;
}

void GridLayout::set_lines(int lines, int line_height) {
  lines_ = std::clamp(lines, 1, kMaxRecordLines);
  line_height_ = std::max(line_height, 1);
}

void GridLayout::scroll_to(int x, int line) {
  x_ = x;
  line_ = line;
}

int GridLayout::width(int place) const {
  const auto i = static_cast<size_t>(place);
  return static_cast<int>(edges_[i + 1] - edges_[i]);
}

// ---- the frozen part

int GridLayout::frozen_places() const {
  const int64_t room = std::max(viewport_.width() - kLeastScrolled, 0);
  int count = std::min(wanted_places_, place_count());
  while (count > 0 && edges_[static_cast<size_t>(count)] > room) --count;
  return count;
}

int GridLayout::frozen_rows() const {
  const int room = std::max(viewport_.height() - std::max(row_height(), kLeastScrolled), 0) / row_height();
  return std::min({wanted_rows_, rows_, room});
}

int GridLayout::frozen_width() const {
  return static_cast<int>(edges_[static_cast<size_t>(frozen_places())]);
}

// ---- from cells to pixels

// Of the upper edge of what scrolls, from the top of the first record that does.
int64_t GridLayout::scrolled_y() const {
  return int64_t{line_ / lines_} * row_height() + line_ % lines_ * row_height() / lines_;
}

int GridLayout::left(int place) const {
  const int64_t edge = edges_[static_cast<size_t>(place)];
  return near(place < frozen_places() ? edge : edge - x_);
}

int GridLayout::top(int row) const {
  const int64_t y = int64_t{row} * row_height();
  return near(row < frozen_rows() ? y : y - scrolled_y());
}

// ---- from pixels to cells

int GridLayout::place_at(int x) const {
  if (x < 0) return -1;
  const int64_t edge = x < frozen_width() ? x : int64_t{x} + x_;
  const auto right = std::ranges::upper_bound(edges_, edge);
  return right == edges_.end() ? -1 : static_cast<int>(right - edges_.begin()) - 1;
}

int GridLayout::row_at(int y) const {
  if (y < 0) return -1;
  const int64_t row = (y < frozen_height() ? y : y + scrolled_y()) / row_height();
  return row < rows_ ? static_cast<int>(row) : -1;
}

int GridLayout::nearest_place(int x) const {
  const int place = place_at(std::max(x, 0));
  return place >= 0 ? place : place_count() - 1;
}

int GridLayout::nearest_row(int y) const {
  const int row = row_at(std::max(y, 0));
  return row >= 0 ? row : rows_ - 1;
}

std::pair<int, int> GridLayout::scrolled_places() const {
  if (scrolled_width() <= 0 || place_count() == frozen_places()) return {0, 0};
  const int first = place_at(frozen_width());
  if (first < 0) return {0, 0};
  return {first, nearest_place(viewport_.width() - 1) + 1};
}

std::pair<int, int> GridLayout::scrolled_rows() const {
  if (scrolled_height() <= 0 || rows_ == frozen_rows()) return {0, 0};
  const int first = row_at(frozen_height());
  if (first < 0) return {0, 0};
  return {first, nearest_row(viewport_.height() - 1) + 1};
}

int GridLayout::rows_of_page() const {
  return std::max(scrolled_height() / row_height(), 1);
}

// ---- scrolling

int GridLayout::last_x() const {
  const int64_t whole = edges_.back() - frozen_width();
  return near(std::max<int64_t>(whole - scrolled_width(), 0));
}

int GridLayout::last_line() const {
  const int64_t beyond = int64_t{rows_ - frozen_rows()} * row_height() - scrolled_height();
  if (beyond <= 0) return 0;
  const int64_t rows = beyond / row_height();
  const int64_t rest = beyond % row_height();
  return static_cast<int>(rows * lines_ + (rest * lines_ + row_height() - 1) / row_height());
}

int GridLayout::x_for(int place) const {
  if (place < frozen_places()) return x_;
  const int64_t begin = edges_[static_cast<size_t>(place)] - frozen_width();
  const int64_t end = edges_[static_cast<size_t>(place) + 1] - frozen_width() - scrolled_width();
  // A field wider than the window shows its beginning.
  return near(std::min(std::max<int64_t>(x_, end), begin));
}

int GridLayout::line_for(int row) const {
  if (row < frozen_rows()) return line_;
  const int64_t begin = int64_t{row - frozen_rows()} * lines_;
  const int64_t beyond = int64_t{row + 1 - frozen_rows()} * row_height() - scrolled_height();
  const int64_t end = beyond <= 0 ? 0
                                  : beyond / row_height() * lines_ +
                                        (beyond % row_height() * lines_ + row_height() - 1) / row_height();
  return static_cast<int>(std::min(std::max<int64_t>(line_, end), begin));
}

}  // namespace rowvane
