// The names that the printing system has for paper sizes.
#pragma once

#include <optional>
#include <string_view>

namespace rowvane::platform {

struct PaperSize {
  int width;   // tenths of a millimetre
  int length;  // tenths of a millimetre
};

// "A4", "Letter", "iso_a4_210x297mm", "na_letter_8.5x11in" (PWG 5101.1), "Custom.100x150mm", "w595h842"
// (points). What follows a comma or a point of the common names ("A4.Borderless") does not count.
std::optional<PaperSize> paper_size(std::string_view name);

}  // namespace rowvane::platform
