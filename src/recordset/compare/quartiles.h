// Finding quartiles and the mean: "Find Quartiles and Mean Field Values".
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "recordset/record_scope.h"

namespace rowvane {

// Bits of the mode. The bands, any of them:
inline constexpr uint8_t kBelowFirstQuartile = 1;
inline constexpr uint8_t kFromFirstQuartile = 2;
inline constexpr uint8_t kFromSecondQuartile = 4;
inline constexpr uint8_t kFromThirdQuartile = 8;
inline constexpr uint8_t kQuartileBits = 15;
// Either of these two finds by the mean; the bits of the bands only keep the states of their boxes then.
inline constexpr uint8_t kBelowMean = 16;
inline constexpr uint8_t kFromMean = 32;

// Under "Find quartiles:", in the order of their bits from 1; then those of kBelowMean and kFromMean.
inline constexpr std::array<std::string_view, 4> kQuartileBandTexts = {
    "< 1st quartile", ">= 1st quartile and < 2nd quartile", ">= 2nd quartile and < 3rd quartile",
    ">= 3rd quartile"};
inline constexpr std::array<std::string_view, 2> kMeanTexts = {"Find values smaller than mean",
                                                               "Find values equal to or greater than mean"};

struct QuartileSearch {
  bool whole_table = true;             // or the current record set; see records_of_scope
  bool whole_table_statistics = true;  // "Entire table statistics"
  size_t field = 0;                    // of type Number
  uint8_t mode = kBelowFirstQuartile;
};

// ---- the rules of the dialog

enum class QuartileChoice { kBands, kSmaller, kEqualOrGreater };  // its radio buttons

QuartileChoice quartile_choice(uint8_t mode);
// MODE after a radio button was chosen: the boxes keep their states.
uint8_t with_choice(uint8_t mode, QuartileChoice choice);
// MODE after the box of BAND, one of its bits, was clicked.
uint8_t with_band(uint8_t mode, uint8_t band, bool checked);
// "Entire table statistics" is checked and disabled while the whole table is searched.
bool is_statistics_choice_enabled(const QuartileSearch& search);
bool uses_whole_table_statistics(const QuartileSearch& search);

// A field that is missing or not of type Number; an encrypted one (error 137); a mode that says nothing to
// find (a beep), or both sides of the mean.
Check check_quartiles(const CWorkSheet& table, const QuartileSearch& search);

// ---- the search

// Of the numbers of one field. Empty values, formula errors and infinities do not count.
struct FieldStatistics {
  uint64_t count = 0;  // without any, the rest means nothing
  double mean = 0;
  std::array<double, 3> quartiles{};
};

// Of the records RECORDS. The same whatever their order and the number of threads. Incomplete when cancelled.
FieldStatistics field_statistics(const CWorkSheet& table, std::span<const uint32_t> records, size_t field,
                                 const Options& options, const Progress& progress = Progress::none());

struct QuartileResult : RecordSetResult {
  FieldStatistics statistics;
};

// The records of SCOPE whose numbers lie in a band of the mode or on its side of the mean, in the order of
// SCOPE. Empty values and formula errors lie in none. Fails with error 52 where check_quartiles refuses the
// field, 137 where it is encrypted.
QuartileResult find_quartiles(const CWorkSheet& table, const RecordSet& scope, const QuartileSearch& search,
                              const Options& options, Progress& progress = Progress::none());

}  // namespace rowvane
