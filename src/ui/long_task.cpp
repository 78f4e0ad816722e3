#include "ui/long_task.h"

#include <QApplication>
#include <QEvent>
#include <QEventLoop>
#include <QProgressDialog>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <mutex>
#include <string>
#include <thread>

#include "ui/text.h"

namespace rowvane {
namespace {

constexpr int kRefreshMilliseconds = 50;
constexpr int kShowAfterMilliseconds = 400;
constexpr int kSteps = 1000;

// Keeps what the threads of the work report until the box asks for it.
class TaskProgress final : public Progress {
 public:
  void begin(std::string_view caption) override {
    const std::lock_guard lock(mutex_);
    caption_ = caption;
    done_ = 0;
    total_ = 0;
  }
  void report(uint64_t done, uint64_t total) override {
    done_.store(done, std::memory_order_relaxed);
    total_.store(total, std::memory_order_relaxed);
  }
  bool cancelled() const override { return cancelled_.load(std::memory_order_relaxed); }
  void cancel() { cancelled_ = true; }

  std::string caption() {
    const std::lock_guard lock(mutex_);
    return caption_;
  }
  // In kSteps; 0 while the total is not known.
  int steps() const {
    const uint64_t total = total_.load(std::memory_order_relaxed);
    const uint64_t done = done_.load(std::memory_order_relaxed);
    if (total == 0) return 0;
    return static_cast<int>(static_cast<double>(std::min(done, total)) / static_cast<double>(total) * kSteps);
  }

 private:
  std::mutex mutex_;
  std::string caption_;
  std::atomic<uint64_t> done_ = 0;
  std::atomic<uint64_t> total_ = 0;
  std::atomic<bool> cancelled_ = false;
};

// Keeps the user's hands off all windows but the box, also before the box is there.
class InputBlocker final : public QObject {
 public:
  explicit InputBlocker(const QWidget& box) : box_(box) { qApp->installEventFilter(this); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    switch (event->type()) {
      case QEvent::KeyPress:
      case QEvent::KeyRelease:
      case QEvent::Shortcut:
      case QEvent::ShortcutOverride:
      case QEvent::MouseButtonPress:
      case QEvent::MouseButtonRelease:
      case QEvent::MouseButtonDblClick:
      case QEvent::Wheel:
      case QEvent::ContextMenu:
      case QEvent::Drop:
      case QEvent::Close:
        break;
      default:
        return false;
    }
    const auto* widget = qobject_cast<QWidget*>(watched);
    if (widget == nullptr || widget->window() == &box_) return false;
    if (event->type() == QEvent::Close) event->ignore();
    return true;
  }

 private:
  const QWidget& box_;
};

}  // namespace

bool run_long_task(QWidget* parent, const QString& caption, const std::function<void(Progress&)>& work) {
  TaskProgress progress;
  QProgressDialog box(caption, QProgressDialog::tr("Cancel"), 0, kSteps, parent);
  box.setWindowTitle(caption);
  box.setWindowModality(Qt::ApplicationModal);
  box.setMinimumDuration(kShowAfterMilliseconds);
  box.setAutoClose(false);
  box.setAutoReset(false);
  box.setValue(0);

  QEventLoop loop;
  std::thread worker([&] {
    work(progress);
    QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
  });
  QTimer refresh;
  QObject::connect(&refresh, &QTimer::timeout, &box, [&] {
    const std::string stage = progress.caption();
    if (!stage.empty()) box.setLabelText(to_qt(stage));
    if (!box.wasCanceled()) box.setValue(progress.steps());
  });
  QObject::connect(&box, &QProgressDialog::canceled, &box, [&] {
    progress.cancel();
    box.setLabelText(QProgressDialog::tr("Cancelling..."));
  });
  refresh.start(kRefreshMilliseconds);
  const InputBlocker blocker(box);
  loop.exec();
  worker.join();
  return !progress.cancelled();
}

}  // namespace rowvane
