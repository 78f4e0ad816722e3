// Where the checkout is that the tests were built from, for those that read files of it.
#pragma once

namespace rowvane {

// Without a slash at the end.
extern const char* const kSourceFolder;

}  // namespace rowvane
