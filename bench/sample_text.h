// The texts that the benchmarks read: made from the flights file, and summed up without the engine.
#pragma once

#include <cstdint>
#include <string>

namespace rowvane::bench {

struct TextSum {
  uint64_t records = 0;
  int64_t delay = 0;  // sum of the second cell
  uint64_t bytes = 0;
};

// Adds up the records behind the first line, by looking for line ends and commas only. PATH "-" is the
// standard input. Ends the program when it can't be read or holds something else.
TextSum sum_text(const std::string& path);

// Writes the records of the flights text FROM to TO, from the start again when they end, until there are
// RECORDS.
void make_records(const std::string& from, const std::string& to, uint64_t records);

// Writes a text of at least BYTES bytes: a key, which has KEYS values, and five flights in each record.
// Answers the number of records.
uint64_t make_wide(const std::string& from, const std::string& to, uint64_t bytes, uint64_t keys);

// Ends the program with MESSAGE.
[[noreturn]] void fail(const std::string& message);

}  // namespace rowvane::bench
