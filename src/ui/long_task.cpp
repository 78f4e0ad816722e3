#include "ui/long_task.h"

#include <QApplication>
#include <QEvent>
#include <QEventLoop>
#include <QProgressDialog>
#include <QThread>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <limits>
#include <mutex>
#include <string>
#include <thread>

#include "ui/document/database_document.h"
#include "ui/text.h"

namespace rowvane {
namespace {

constexpr int kRefreshMilliseconds = 50;
constexpr int kShowAfterMilliseconds = 400;
constexpr int kSteps = 1000;

int running_tasks = 0;

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

// Keeps the user's hands off all windows but the box and what the work asks, also before the box is there.
class InputBlocker final : public QObject {
 public:
  // PARENT, which may be null, is the window that the work began in.
  explicit InputBlocker(const QWidget* parent) : window_(parent != nullptr ? parent->window() : nullptr) {
    qApp->installEventFilter(this);
  }

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
      case QEvent::MouseMove:
      case QEvent::ToolTip:
      case QEvent::Wheel:
      case QEvent::ContextMenu:
      case QEvent::Drop:
      case QEvent::Close:
        break;
      default:
        return false;
    }
    const auto* widget = qobject_cast<QWidget*>(watched);
    if (widget == nullptr) return false;
    const QWidget* window = widget->window();
    if (window != window_ && window->isModal()) return false;
    if (event->type() == QEvent::Close) event->ignore();
    return true;
  }

 private:
  const QWidget* window_;
};

}  // namespace

bool run_long_task(QWidget* parent, const QString& caption, const std::function<void(Progress&)>& work,
                   ProgressBox progress_box) {
  TaskProgress progress;
  QProgressDialog box(caption, QProgressDialog::tr("Cancel"), 0, kSteps, parent);
  box.setWindowTitle(caption);
  box.setWindowModality(Qt::ApplicationModal);
  box.setMinimumDuration(progress_box == ProgressBox::kShown ? kShowAfterMilliseconds
                                                             : std::numeric_limits<int>::max());
  box.setAutoClose(false);
  box.setAutoReset(false);
  box.setValue(0);

  ++running_tasks;
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
  const InputBlocker blocker(parent);
  if (progress_box == ProgressBox::kHidden) QGuiApplication::setOverrideCursor(Qt::WaitCursor);
  loop.exec();
  if (progress_box == ProgressBox::kHidden) QGuiApplication::restoreOverrideCursor();
  worker.join();
  --running_tasks;
  return !progress.cancelled();
}

bool run_long_change(QWidget* views, const QString& caption, DatabaseDocument& document,
                     const std::function<void(Progress&)>& work) {
  views->setUpdatesEnabled(false);
  document.database().before_change();
  document.hold_notices();
  const bool done = run_long_task(views, caption, work);
  document.release_notices();
  views->setUpdatesEnabled(true);
  return done;
}

bool is_long_task_running() {
  return running_tasks > 0;
}

bool QuestionsOnWindow::ask(const std::string& question) {
  bool yes = false;
  const auto type =
      QThread::currentThread() == window_.thread() ? Qt::DirectConnection : Qt::BlockingQueuedConnection;
  QMetaObject::invokeMethod(
      &window_, [&] { yes = questions_.ask(question); }, type);
  return yes;
}

}  // namespace rowvane
