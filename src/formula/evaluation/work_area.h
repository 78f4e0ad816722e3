// Memory for the texts and arrays that come up while formulas are evaluated.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "formula/evaluation/scalar.h"

namespace rowvane {

inline constexpr size_t kMaxTextResultBytes = 24'494;  // of a text that an operator or a function makes

// Gives memory out in order and takes it back all at once, to give it out again: after the first records an
// evaluation allocates nothing. Not safe for threads.
class WorkArea {
 public:
  // An evaluation that needs more than MAX_BYTES is a mistake in its formula.
  static constexpr size_t kEvaluationBytes = size_t{256} << 20;
  static constexpr size_t kUnlimited = ~size_t{0};

  explicit WorkArea(size_t max_bytes = kEvaluationBytes) : max_bytes_(max_bytes) {}

  // Forgets everything that was given out.
  void clear();

  // Room for a text; null when BYTES are more than kMaxTextResultBytes or the area is full.
  char* text(size_t bytes);
  // A text of TEXT's bytes, whatever their number; an error "#MEMORY!" when the area is full.
  Scalar keep(std::string_view text);
  // Room for the cells of an array; null when the area is full.
  Scalar* cells(size_t count);

  // LEFT followed by RIGHT; "#MEMORY!" when that is too long. Appends in place where LEFT was the last text
  // made.
  Scalar join(std::string_view left, std::string_view right);
  // NUMBER with at most 15 significant digits.
  std::string_view number_text(double number, std::string_view decimal_separator);

 private:
  struct Chunk {
    std::unique_ptr<char[]> bytes;
    size_t size;
  };

  char* take(size_t bytes, size_t alignment);

  size_t max_bytes_;
  std::vector<Chunk> chunks_;
  size_t chunk_ = 0;  // the one being given out
  size_t used_ = 0;   // of it
  size_t total_ = 0;  // bytes of all chunks
  std::string digits_;
};

}  // namespace rowvane
