// Reads the sample of a text file while its dialog stays alive.
#pragma once

#include <QObject>
#include <memory>

#include "exchange/text/text_import.h"

namespace rowvane {

// Reads on a thread of its own: a drive that does not answer holds up nobody. Of requests that come while one
// is being read, the last is read next and the others are dropped.
class SampleReader final : public QObject {
  Q_OBJECT

 public:
  SampleReader(std::string path, uint32_t records, QObject* parent = nullptr);
  ~SampleReader() override;

  void read(const TextImport& settings);
  bool is_reading() const { return asked_ != answered_; }

 signals:
  // The sample for the last request. Its table is null where the error says why.
  void finished(std::shared_ptr<const rowvane::TextImportResult> sample);

 private:
  struct Work;  // shared with the thread, which may outlive this

  void take_result();

  std::shared_ptr<Work> work_;
  int asked_ = 0;
  int answered_ = 0;
};

}  // namespace rowvane
