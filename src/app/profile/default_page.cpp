#include "app/profile/default_page.h"

namespace rowvane {

DefaultPage page_of(const platform::PrinterPage& printer) {
  return {printer.paper_width / 10.0, printer.paper_length / 10.0,
          printer.orientation == platform::PrinterPage::kLandscape};
}

}  // namespace rowvane
