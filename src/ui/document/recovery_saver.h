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

// A copy is written on a thread of its own once the user has paused. Whoever is about to change a database
// calls `stop` first; keys, buttons and drops do so before they reach their windows. What was stopped is done
// in the next pause. After a save that took long the next one waits accordingly longer.
class RecoverySaver final : public QObject {
 public:
  // FOLDER must outlive this.
  explicit RecoverySaver(RecoveryFolder& folder);
  ~RecoverySaver() override;

  // From now on DOCUMENT, which must be forgotten before its end, has a copy while it has unsaved changes.
  void watch(DatabaseDocument& document);
  // The same for one that was opened from COPY, which stands for its unsaved changes.
  void watch_recovered(DatabaseDocument& document, const QString& copy);
  // Removes the copy of a document that goes.
  void forget(const DatabaseDocument& document);

  // Ends the writing of a copy, if there is one.
  void stop();
  // Writes the copies that are due without waiting for a pause. False when one could not be written.
  bool save_now();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct Watched {
    DatabaseDocument* document;
    QString copy;      // that exists
    bool due = false;  // there are changes that the copy lacks
  };
  class Writer;

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
