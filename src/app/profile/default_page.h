// The page that new print-outs begin with.
#pragma once

#include "platform/printer.h"

namespace rowvane {

struct DefaultPage {
  double width_mm = 210;  // of the upright page
  double length_mm = 297;
  bool landscape = false;

  bool operator==(const DefaultPage&) const = default;
};

// The page of a printer, whose lengths are tenths of a millimetre.
DefaultPage page_of(const platform::PrinterPage& printer);

}  // namespace rowvane
