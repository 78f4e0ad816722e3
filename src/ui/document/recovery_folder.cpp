#include "ui/document/recovery_folder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QUuid>
#include <algorithm>

namespace rowvane {
namespace {

QString description_path(const QString& copy) {
  const QFileInfo info(copy);
  return QDir(info.path()).filePath(info.completeBaseName() + ".ini");
}

// A lock that outlives its owner until somebody takes it over, however old it is.
std::unique_ptr<QLockFile> open_lock(const QString& path) {
  auto lock = std::make_unique<QLockFile>(path);
  lock->setStaleLockTime(0);
  return lock;
}

RecoveryCopy read_description(const QString& copy) {
  const QSettings description(description_path(copy), QSettings::IniFormat);
  return {copy, description.value("original").toString(), description.value("title").toString(),
          description.value("format").toString(), description.value("time").toDateTime()};
}

}  // namespace

RecoveryFolder::~RecoveryFolder() {
  for (const auto& lock : taken_) lock->unlock();
  if (lock_ != nullptr) lock_->unlock();
}

bool RecoveryFolder::take_lock() {
  if (lock_ != nullptr) return true;
  if (folder_.isEmpty() || !QDir().mkpath(folder_)) return false;
  QFile::setPermissions(folder_, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  name_ = QUuid::createUuid().toString(QUuid::Id128);
  lock_ = open_lock(QDir(folder_).filePath(name_ + ".lock"));
  if (!lock_->tryLock()) lock_.reset();
  return lock_ != nullptr;
}

QString RecoveryFolder::new_copy() {
  if (!take_lock()) return {};
  return QDir(folder_).filePath(name_ + '-' + QString::number(++copies_) + ".rvb");
}

void RecoveryFolder::describe(const RecoveryCopy& copy) {
  QSettings description(description_path(copy.path), QSettings::IniFormat);
  description.setValue("original", copy.original);
  description.setValue("title", copy.title);
  description.setValue("format", copy.format);
  description.setValue("time", copy.time);
}

void RecoveryFolder::remove(const QString& path) {
  if (path.isEmpty()) return;
  QFile::remove(path);
  QFile::remove(description_path(path));
}

std::vector<RecoveryCopy> RecoveryFolder::take_left_behind() {
  std::vector<RecoveryCopy> found;
  const QDir folder(folder_);
  QStringList names;
  for (const QString& file : folder.entryList({"*.lock", "*.rvb"}, QDir::Files))
    names << QFileInfo(file).completeBaseName().section('-', 0, 0);
  names.removeDuplicates();
  names.removeAll(name_);
  for (const QString& name : names) {
    auto lock = open_lock(folder.filePath(name + ".lock"));
    if (!lock->tryLock()) continue;
    for (const QString& copy : folder.entryList({name + "-*.rvb"}, QDir::Files)) {
      // Without a description it was not finished.
      if (QFile::exists(description_path(folder.filePath(copy))))
        found.push_back(read_description(folder.filePath(copy)));
      else
        remove(folder.filePath(copy));
    }
    taken_.push_back(std::move(lock));
  }
  std::ranges::sort(found, {}, &RecoveryCopy::time);
  return found;
}

}  // namespace rowvane
