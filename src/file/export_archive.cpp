#include "file/export_archive.h"

#include "file/save_time.h"
#include "file/zip_writer.h"

namespace rowvane {
namespace {

class ZipExportArchive final : public ExportArchive {
 public:
  ErrorCode create(const std::string& path) {
    ZipWriterOptions options;
    options.save_time = save_time_now();
    return writer_.create(path, options);
  }

  ErrorCode add(const std::string& name, const Content& content) override {
    std::string bytes;
    const ErrorCode error = content.read(bytes);
    return error == ErrorCode::kOk ? writer_.add(name, bytes, ZipMethod::kDeflated) : error;
  }

  ErrorCode finish() override { return writer_.finish(); }

 private:
  ZipWriter writer_;
};

}  // namespace

std::unique_ptr<ExportArchive> make_export_archive(const std::string& path) {
  auto archive = std::make_unique<ZipExportArchive>();
  if (archive->create(path) != ErrorCode::kOk) return nullptr;
  return archive;
}

}  // namespace rowvane
