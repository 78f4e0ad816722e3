#include "ui/icons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <algorithm>
#include <array>

// The linker leaves out resources of a library that nothing names. To be called outside of any namespace.
static void load_icons() {
  Q_INIT_RESOURCE(icons);
}

namespace rowvane {
namespace {

QColor color_of(QIcon::Mode mode) {
  const QPalette palette = QGuiApplication::palette();
  if (mode == QIcon::Selected) return palette.color(QPalette::HighlightedText);
  return palette.color(mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active, QPalette::WindowText);
}

// The sizes that the icons were drawn in, in pixels.
constexpr std::array kSizes = {16, 20, 24, 28, 32, 40, 48, 64};

// The icon in the least size that is not below SIZE.
QPixmap drawing(const QString& name, int size) {
  const auto* const found = std::ranges::lower_bound(kSizes, size);
  const int drawn = found == kSizes.end() ? kSizes.back() : *found;
  return QPixmap(QString(":/icons/%1-%2.png").arg(name).arg(drawn));
}

// Draws when it is asked to, in the colours of that moment.
class DrawnIcon final : public QIconEngine {
 public:
  // COLOR: invalid for those of texts.
  explicit DrawnIcon(QString name, const QColor& color = {}) : name_(std::move(name)), color_(color) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    const qreal ratio = painter->device()->devicePixelRatio();
    painter->drawPixmap(rect, drawn(rect.size() * ratio, color(mode)));
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
    return drawn(size, color(mode));
  }
  QIconEngine* clone() const override { return new DrawnIcon(name_, color_); }
  QSize actualSize(const QSize& size, QIcon::Mode, QIcon::State) override { return size; }
  bool isNull() override { return name_.isEmpty(); }

 private:
  QPixmap drawn(const QSize& size, const QColor& color) const {
    const QString key =
        QString("rowvane/%1/%2/%3x%4")
            .arg(name_, color.name(), QString::number(size.width()), QString::number(size.height()));
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap)) return pixmap;
    pixmap = drawing(name_, std::min(size.width(), size.height()));
    if (pixmap.size() != size) pixmap = pixmap.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QPainter painter(&pixmap);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(pixmap.rect(), color);
    painter.end();
    QPixmapCache::insert(key, pixmap);
    return pixmap;
  }

  QColor color(QIcon::Mode mode) const { return color_.isValid() ? color_ : color_of(mode); }

  QString name_;
  QColor color_;
};

}  // namespace

QIcon icon(const QString& name) {
  load_icons();
  return QIcon(new DrawnIcon(name));
}

QIcon icon(const QString& name, const QColor& color) {
  load_icons();
  return QIcon(new DrawnIcon(name, color));
}

QIcon program_icon() {
  load_icons();
  QIcon program;
  for (const int size : kSizes) program.addPixmap(drawing("program", size));
  return program;
}

}  // namespace rowvane
