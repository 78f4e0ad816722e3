// Keeps copies of databases with unsaved changes in the recovery folder.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <memory>
#include <vector>

#include "ui/document/database_document.h"
#include "ui/document/recovery_folder.h"

namespace rowvane {

// A copy is written on a thread of its own once nothing has changed for a moment. The next change stops the
// writing before it begins; what was stopped is done in the next pause. After a save that took long the next
// one waits accordingly longer.
class RecoverySaver final : public QObject, private BackgroundReader {
 public:
  // FOLDER must outlive this.
  explicit RecoverySaver(RecoveryFolder& folder);
  ~RecoverySaver() override;

  // From now on DOCUMENT, which must be forgotten before its end, has a copy while it has unsaved changes.
  void watch(DatabaseDocument& document);
  // The same for one that was opened from COPY, which stands for its unsaved changes.
  void watch_recovered(DatabaseDocument& document, const QString& copy);
  // Removes the copy of a document that goes.
  void forget(DatabaseDocument& document);

  // True while a copy is being written.
  bool is_writing() const { return writer_ != nullptr; }
  // Writes the copies that are due without waiting for a pause. False when one could not be written.
  bool save_now();

 private:
  struct Watched {
    DatabaseDocument* document;
    QString copy;      // that exists
    bool due = false;  // there are changes that the copy lacks
  };
  class Writer;

  void stop() override;
  Watched* find(const DatabaseDocument& document);
  void mark(DatabaseDocument& document);
  void drop_copy(const DatabaseDocument& document);
  void save_in_pause();
  void finish(bool written);

  RecoveryFolder& folder_;
  std::vector<Watched> watched_;
  QTimer pause_;
  QElapsedTimer since_save_;
  qint64 shortest_wait_ = 0;  // milliseconds
  std::unique_ptr<Writer> writer_;
  int writers_ = 0;  // so far
};

}  // namespace rowvane
