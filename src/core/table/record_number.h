// The numbers of records.
#pragma once

#include <compare>
#include <cstdint>

namespace rowvane {

// The number of a record as users see it, from 1. Where a record stands in the columns, from 0, is its
// position, a plain uint32_t; neither becomes the other unsaid. Number 0 is no record's: its position is one
// that no table reaches.
class RecordNumber {
 public:
  constexpr RecordNumber() = default;
  // A number that is written in the source.
  consteval RecordNumber(int number) : number_(static_cast<uint32_t>(number)) {}
  // A number that a user typed or a file holds.
  constexpr explicit RecordNumber(uint32_t number) : number_(number) {}

  constexpr uint32_t number() const { return number_; }
  constexpr uint32_t position() const { return number_ - 1; }

  constexpr RecordNumber& operator++() {
    ++number_;
    return *this;
  }
  auto operator<=>(const RecordNumber&) const = default;

  template <typename Stream>
  friend Stream& operator<<(Stream& stream, RecordNumber record) {
    stream << record.number_;
    return stream;
  }

 private:
  uint32_t number_ = 0;
};

// The number of the record at POSITION.
constexpr RecordNumber record_number(uint32_t position) {
  return RecordNumber(position + 1);
}

}  // namespace rowvane
