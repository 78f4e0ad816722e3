#include "source_folder.h"

namespace rowvane {

const char* const kSourceFolder = ROWVANE_SOURCE_FOLDER;

}  // namespace rowvane
