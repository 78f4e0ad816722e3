#include "ui/grid/thumbnails.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QSet>
#include <algorithm>
#include <memory>

#include "ui/text.h"

namespace rowvane {
namespace {

constexpr qsizetype kMostThumbnailBytes = qsizetype{64} << 20;  // more than any window shows at a time
constexpr size_t kMostWanted = 200;                             // older wishes have been scrolled away
constexpr uint64_t kMostImageBytes = uint64_t{64} << 20;

// An inserted file by the address of its content, a file outside by its path.
QByteArray key_of(const FileObject& file, int side) {
  QByteArray key = QByteArray::number(side) + ':';
  if (file.is_shortcut()) return key + file.shortcut.c_str();
  const void* const address = file.content.source() != nullptr
                                  ? static_cast<const void*>(file.content.source().get())
                                  : file.content.in_memory().data();
  return key + QByteArray::number(reinterpret_cast<quintptr>(address), 16);
}

bool read_bytes(const FileObject& file, QByteArray& bytes) {
  if (file.is_shortcut()) {
    QFile outside(to_qt(file.shortcut));
    if (!QFileInfo(outside).isFile() || static_cast<uint64_t>(outside.size()) > kMostImageBytes) return false;
    if (!outside.open(QIODevice::ReadOnly)) return false;
    bytes = outside.readAll();
    return true;
  }
  std::string content;
  if (file.content.size() > kMostImageBytes || file.content.read(content) != ErrorCode::kOk) return false;
  bytes = QByteArray(content.data(), static_cast<qsizetype>(content.size()));
  return true;
}

Thumbnails::Thumbnail decode(const FileObject& file, int side) {
  QByteArray bytes;
  if (!read_bytes(file, bytes)) return {Thumbnails::State::kDamaged, {}};
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::ReadOnly);
  QImageReader reader(&buffer);
  reader.setAutoTransform(true);
  const QSize size = reader.size();
  if (size.isValid() && (size.width() > side || size.height() > side)) {
    reader.setScaledSize(size.scaled(side, side, Qt::KeepAspectRatio).expandedTo({1, 1}));
  }
  QImage image = reader.read();
  if (image.isNull()) return {Thumbnails::State::kDamaged, {}};
  if (image.width() > side || image.height() > side) {
    image = image.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
  }
  return {Thumbnails::State::kImage, QPixmap::fromImage(image)};
}

}  // namespace

Thumbnails::Thumbnails(QObject* parent) : QObject(parent), kept_(kMostThumbnailBytes) {
  timer_.setSingleShot(true);
  connect(&timer_, &QTimer::timeout, this, &Thumbnails::decode_next);
}

bool Thumbnails::is_image_name(const std::string& name) {
  static const QSet<QByteArray> kExtensions = [] {
    const QList<QByteArray> formats = QImageReader::supportedImageFormats();
    return QSet<QByteArray>(formats.begin(), formats.end());
  }();
  return kExtensions.contains(QFileInfo(to_qt(name)).suffix().toLower().toLatin1());
}

Thumbnails::Thumbnail Thumbnails::of(const FileObject& file, int side) {
  if (!is_image_name(file.is_shortcut() ? file.shortcut : file.name)) return {State::kNoImage, {}};
  const QByteArray key = key_of(file, side);
  if (const Kept* kept = kept_.object(key)) return kept->thumbnail;
  if (std::ranges::find(wanted_, key, &Wanted::key) == wanted_.end()) {
    wanted_.push_back({key, file, side});
    if (wanted_.size() > kMostWanted) wanted_.pop_front();
  }
  if (!timer_.isActive()) timer_.start(0);
  return {};
}

void Thumbnails::decode_next() {
  if (wanted_.empty()) return;
  const Wanted wanted = std::move(wanted_.front());
  wanted_.pop_front();
  auto kept = std::make_unique<Kept>(Kept{wanted.file.content, decode(wanted.file, wanted.side)});
  const QSize size = kept->thumbnail.pixmap.size();
  const qsizetype bytes = 4 * qsizetype{size.width()} * size.height() + 200;
  kept_.insert(wanted.key, kept.release(), std::min(bytes, kMostThumbnailBytes));
  if (!wanted_.empty()) timer_.start(0);
  emit ready();
}

}  // namespace rowvane
