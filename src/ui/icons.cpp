#include "ui/icons.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>

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

// Draws when it is asked to, in the colours of that moment.
class DrawnIcon final : public QIconEngine {
 public:
  explicit DrawnIcon(QString name) : name_(std::move(name)) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    const qreal ratio = painter->device()->devicePixelRatio();
    painter->drawPixmap(rect, drawn(rect.size() * ratio, color_of(mode)));
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
    return drawn(size, color_of(mode));
  }
  QIconEngine* clone() const override { return new DrawnIcon(name_); }
  QSize actualSize(const QSize& size, QIcon::Mode, QIcon::State) override { return size; }
  bool isNull() override { return name_.isEmpty(); }

 private:
  QPixmap drawn(const QSize& size, const QColor& color) const {
    const QString key =
        QString("rowvane/%1/%2/%3x%4")
            .arg(name_, color.name(), QString::number(size.width()), QString::number(size.height()));
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap)) return pixmap;
    pixmap = QPixmap(size);
    pixmap.fill(Qt::transparent);
    QFile file(":/icons/" + name_ + ".svg");
    if (!file.open(QIODevice::ReadOnly)) return pixmap;
    QSvgRenderer renderer(file.readAll().replace("currentColor", color.name().toLatin1()));
    QPainter painter(&pixmap);
    renderer.render(&painter);
    painter.end();
    QPixmapCache::insert(key, pixmap);
    return pixmap;
  }

  QString name_;
};

}  // namespace

QIcon icon(const QString& name) {
  static const bool loaded = (load_icons(), true);
  return loaded ? QIcon(new DrawnIcon(name)) : QIcon();
}

}  // namespace rowvane
