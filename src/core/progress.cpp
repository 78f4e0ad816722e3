#include "core/progress.h"

namespace rowvane {

Progress& Progress::none() {
  static Progress nobody;
  return nobody;
}

}  // namespace rowvane
