// Those who read a database on threads of their own.
#pragma once

namespace rowvane {

// Something that reads a database beside its owner, such as the writer of a recovery copy. Nothing is locked
// for it: whoever is about to change the database has it stop first (Database::before_change).
class BackgroundReader {
 public:
  virtual ~BackgroundReader() = default;
  // Ends all reading before it returns. Called on the thread of the owner. Long work that changes the
  // database on another thread says so before it begins; its own calls then find nothing that reads, and must
  // be safe.
  virtual void stop() = 0;
};

}  // namespace rowvane
