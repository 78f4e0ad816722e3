// Small images of the files in Images/Files fields.
#pragma once

#include <QCache>
#include <QObject>
#include <QPixmap>
#include <QSize>
#include <QTimer>
#include <deque>

#include "core/table/content.h"

namespace rowvane {

// Decodes an image a moment after it was first asked for, one between two events, at the size that is shown.
// What was shown last is kept, up to a number of bytes.
class Thumbnails final : public QObject {
  Q_OBJECT

 public:
  enum class State { kImage, kWaiting, kDamaged, kNoImage };
  struct Thumbnail {
    State state = State::kWaiting;
    QPixmap pixmap;
  };

  explicit Thumbnails(QObject* parent = nullptr);

  // As large as fits into a square of SIDE device pixels.
  Thumbnail of(const FileObject& file, int side);
  // True where the name says that the file is an image that can be shown.
  static bool is_image_name(const std::string& name);

 signals:
  // Some that were waited for are there.
  void ready();

 private:
  struct Kept {
    Content content;  // stays alive, so that no other can have its address
    Thumbnail thumbnail;
  };
  struct Wanted {
    QByteArray key;
    FileObject file;
    int side = 0;
  };

  void decode_next();

  QCache<QByteArray, Kept> kept_;
  std::deque<Wanted> wanted_;
  QTimer timer_;
};

}  // namespace rowvane
