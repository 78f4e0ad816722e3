// Copies of databases with unsaved changes, kept for the case that the program is killed.
//
// Every running program has in the folder a lock, "NAME.lock", and copies, "NAME-N.rvb", each with a
// description, "NAME-N.ini". Copies whose lock nobody holds were left behind.
#pragma once

#include <QDateTime>
#include <QLockFile>
#include <QString>
#include <memory>
#include <vector>

namespace rowvane {

struct RecoveryCopy {
  QString path;      // of the copy, a database file
  QString original;  // the file it was opened from or saved to; empty for a new database
  QString title;
  QString format;  // name of the format of the original; empty for a new database
  QDateTime time;  // of the last change that it holds
};

class RecoveryFolder {
 public:
  // Makes FOLDER, which belongs to Rowvane alone, when the first copy is made.
  explicit RecoveryFolder(QString folder) : folder_(std::move(folder)) {}
  ~RecoveryFolder();
  RecoveryFolder(const RecoveryFolder&) = delete;
  RecoveryFolder& operator=(const RecoveryFolder&) = delete;

  // The path for a new copy; empty when the folder can't be used.
  QString new_copy();
  // Describes a copy that has just been written.
  void describe(const RecoveryCopy& copy);
  // Removes a copy, written or not, with its description.
  static void remove(const QString& path);

  // The copies of programs that no longer run, the oldest first. They are this program's from now on: nobody
  // else finds them, and they stay until they are removed.
  std::vector<RecoveryCopy> take_left_behind();

 private:
  bool take_lock();

  const QString folder_;
  QString name_;
  std::unique_ptr<QLockFile> lock_;
  std::vector<std::unique_ptr<QLockFile>> taken_;  // of programs that ended
  int copies_ = 0;
};

}  // namespace rowvane
