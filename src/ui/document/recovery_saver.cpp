#include "ui/document/recovery_saver.h"

#include <QThread>
#include <algorithm>
#include <atomic>
#include <thread>
#include <utility>

#include "core/log.h"
#include "ui/long_task.h"
#include "ui/text.h"

namespace rowvane {
namespace {

constexpr int kPauseMilliseconds = 2000;
constexpr qint64 kWaitFactor = 20;  // copies take at most a twentieth of the time

}  // namespace

// One copy on its way.
class RecoverySaver::Writer final : public Progress {
 public:
  // DONE is called on the thread of RECEIVER.
  template <typename Done>
  Writer(DatabaseDocument& document, QString copy, QObject& receiver, Done done)
      : document_(&document), copy_(std::move(copy)), options_(document.options()) {
    time_.start();
    thread_ = std::thread([this, &receiver, done] {
      write();
      QMetaObject::invokeMethod(&receiver, done, Qt::QueuedConnection);
    });
  }
  ~Writer() override { stop(); }

  void stop() {
    cancelled_ = true;
    wait();
  }
  void wait() {
    if (thread_.joinable()) thread_.join();
  }
  // After the end: whether the copy is there.
  bool is_written() const { return written_; }
  qint64 milliseconds() const { return time_.elapsed(); }
  const DatabaseDocument& document() const { return *document_; }
  const QString& copy() const { return copy_; }

  bool cancelled() const override { return cancelled_; }

 private:
  void write() {
    const LogScope log(LogCategory::kRecovery, to_utf8(copy_));
    SaveSettings settings;
    settings.as_copy = true;
    const Outcome outcome = document_->file().save(to_utf8(copy_), settings, options_, *this);
    written_ = outcome.is_done();
  }

  DatabaseDocument* document_;
  QString copy_;
  Options options_;
  QElapsedTimer time_;
  std::atomic<bool> cancelled_ = false;
  bool written_ = false;
  std::thread thread_;
};

RecoverySaver::RecoverySaver(RecoveryFolder& folder) : folder_(folder) {
  pause_.setSingleShot(true);
  pause_.setInterval(kPauseMilliseconds);
  connect(&pause_, &QTimer::timeout, this, &RecoverySaver::save_in_pause);
}

RecoverySaver::~RecoverySaver() {
  stop();
  for (const Watched& watched : watched_) watched.document->database().remove_reader(this);
}

RecoverySaver::Watched* RecoverySaver::find(const DatabaseDocument& document) {
  const auto found = std::ranges::find(watched_, &document, &Watched::document);
  return found != watched_.end() ? &*found : nullptr;
}

void RecoverySaver::watch(DatabaseDocument& document) {
  watch_recovered(document, {});
}

void RecoverySaver::watch_recovered(DatabaseDocument& document, const QString& copy) {
  watched_.push_back({&document, copy});
  document.database().add_reader(this);
  connect(&document, &DatabaseDocument::changed, this, [this, &document] { mark(document); });
  connect(&document, &DatabaseDocument::saved, this, [this, &document] { drop_copy(document); });
}

void RecoverySaver::mark(DatabaseDocument& document) {
  if (Watched* watched = find(document))
    watched->due = document.is_modified() && !document.file().is_read_only();
  pause_.start();
}

void RecoverySaver::drop_copy(const DatabaseDocument& document) {
  Watched* watched = find(document);
  if (watched == nullptr || document.is_modified()) return;
  watched->due = false;
  RecoveryFolder::remove(std::exchange(watched->copy, {}));
}

void RecoverySaver::forget(DatabaseDocument& document) {
  stop();
  Watched* watched = find(document);
  if (watched == nullptr) return;
  disconnect(&document, nullptr, this, nullptr);
  document.database().remove_reader(this);
  RecoveryFolder::remove(watched->copy);
  watched_.erase(watched_.begin() + (watched - watched_.data()));
}

void RecoverySaver::stop() {
  if (writer_ == nullptr) return;
  Q_ASSERT(QThread::currentThread() == thread());
  writer_->stop();
  finish(writer_->is_written());
}

void RecoverySaver::save_in_pause() {
  if (writer_ != nullptr) return;
  if (is_long_task_running()) return pause_.start();
  if (since_save_.isValid() && since_save_.elapsed() < shortest_wait_) return pause_.start();
  const auto due = std::ranges::find(watched_, true, &Watched::due);
  if (due == watched_.end()) return;
  const QString copy = folder_.new_copy();
  if (copy.isEmpty()) return;
  writer_ = std::make_unique<Writer>(*due->document, copy, *this, [this, number = ++writers_] {
    if (writer_ == nullptr || number != writers_) return;
    writer_->wait();
    finish(writer_->is_written());
  });
}

// The copy before this one goes only now.
void RecoverySaver::finish(bool written) {
  const std::unique_ptr<Writer> writer = std::move(writer_);
  shortest_wait_ = writer->milliseconds() * kWaitFactor;
  since_save_.start();
  Watched* watched = find(writer->document());
  if (!written || watched == nullptr) {
    RecoveryFolder::remove(writer->copy());
  } else {
    const DatabaseDocument& document = writer->document();
    const FileFormat* format = document.open().format();
    folder_.describe({writer->copy(), to_qt(document.open().path()), document.title(),
                      to_qt(format != nullptr ? format->name : std::string_view()),
                      QDateTime::currentDateTime()});
    watched->due = false;
    RecoveryFolder::remove(std::exchange(watched->copy, writer->copy()));
  }
  if (std::ranges::find(watched_, true, &Watched::due) != watched_.end()) pause_.start();
}

bool RecoverySaver::save_now() {
  stop();
  shortest_wait_ = 0;
  const auto count = std::ranges::count(watched_, true, &Watched::due);
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    save_in_pause();
    if (writer_ == nullptr) return false;
    writer_->wait();
    const bool written = writer_->is_written();
    finish(written);
    if (!written) return false;
    shortest_wait_ = 0;
  }
  return true;
}

}  // namespace rowvane
