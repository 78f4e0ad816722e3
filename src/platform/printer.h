// The default printer's page.
#pragma once

#include <optional>

namespace rowvane::platform {

struct PrinterPage {
  static constexpr int kPortrait = 1;
  static constexpr int kLandscape = 2;

  int paper_width = 0;   // tenths of a millimetre, of the upright page
  int paper_length = 0;  // tenths of a millimetre
  int orientation = kPortrait;
};

// Nothing without a default printer, or when it does not tell its paper. Asks the printing system, on Linux
// through its command-line programs, for at most some seconds.
std::optional<PrinterPage> default_printer_page();

}  // namespace rowvane::platform
