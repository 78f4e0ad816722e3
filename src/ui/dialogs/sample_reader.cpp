#include "ui/dialogs/sample_reader.h"

#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

namespace rowvane {

struct SampleReader::Work {
  std::string path;
  uint32_t records = 0;
  std::mutex mutex;  // of all below
  std::condition_variable changed;
  SampleReader* reader = nullptr;  // null once it is gone
  std::optional<TextImport> request;
  int request_number = 0;
  std::shared_ptr<const TextImportResult> result;
  int result_number = 0;

  static void run(const std::shared_ptr<Work>& work);
};

void SampleReader::Work::run(const std::shared_ptr<Work>& work) {
  std::unique_lock lock(work->mutex);
  while (true) {
    work->changed.wait(lock, [&] { return work->request || work->reader == nullptr; });
    if (work->reader == nullptr) return;
    const TextImport settings = *std::exchange(work->request, std::nullopt);
    const int number = work->request_number;
    lock.unlock();
    auto result =
        std::make_shared<const TextImportResult>(import_text_sample(work->path, settings, work->records));
    lock.lock();
    work->result = std::move(result);
    work->result_number = number;
    if (work->reader != nullptr)
      QMetaObject::invokeMethod(work->reader, &SampleReader::take_result, Qt::QueuedConnection);
  }
}

SampleReader::SampleReader(std::string path, uint32_t records, QObject* parent)
    : QObject(parent), work_(std::make_shared<Work>()) {
  work_->path = std::move(path);
  work_->records = records;
  work_->reader = this;
  std::thread([work = work_] { Work::run(work); }).detach();
}

SampleReader::~SampleReader() {
  const std::lock_guard lock(work_->mutex);
  work_->reader = nullptr;
  work_->changed.notify_one();
}

void SampleReader::read(const TextImport& settings) {
  const std::lock_guard lock(work_->mutex);
  work_->request = settings;
  work_->request_number = ++asked_;
  work_->changed.notify_one();
}

void SampleReader::take_result() {
  std::shared_ptr<const TextImportResult> result;
  {
    const std::lock_guard lock(work_->mutex);
    if (work_->result_number == answered_) return;  // told already
    answered_ = work_->result_number;
    result = work_->result;
  }
  if (!is_reading()) emit finished(result);
}

}  // namespace rowvane
