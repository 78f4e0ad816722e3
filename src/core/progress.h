// How long operations tell what they have done and learn that they are to stop.
#pragma once

#include <cstdint>
#include <string_view>

namespace rowvane {

// `report` and `cancelled` may be called from any thread of the operation.
// Reported in the units of the operation: bytes or records.
class Progress {
 public:
  virtual ~Progress() = default;

  // A new stage with its caption, such as "Saving Database".
  virtual void begin(std::string_view caption) { (void)caption; }
  // DONE of TOTAL units; TOTAL is 0 when it is not known.
  virtual void report(uint64_t done, uint64_t total) {
    (void)done;
    (void)total;
  }
  // True once the user has asked to stop; it stays true.
  virtual bool cancelled() const { return false; }

  // A progress that nobody looks at.
  static Progress& none();
};

}  // namespace rowvane
