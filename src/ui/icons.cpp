#include "ui/icons.h"

#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>

// The linker leaves out resources of a library that nothing names. To be called outside of any namespace.
static void load_icons() {
  Q_INIT_RESOURCE(icons);
}

namespace rowvane {
namespace {

QPixmap drawn(const QByteArray& drawing, const QColor& color, int pixels) {
  QByteArray colored = drawing;
  colored.replace("currentColor", color.name().toLatin1());
  QSvgRenderer renderer(colored);
  QPixmap pixmap(pixels, pixels);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  renderer.render(&painter);
  return pixmap;
}

}  // namespace

QIcon icon(const QString& name) {
  static const bool loaded = (load_icons(), true);
  static_cast<void>(loaded);
  QFile file(":/icons/" + name + ".svg");
  if (!file.open(QIODevice::ReadOnly)) return {};
  const QByteArray drawing = file.readAll();
  const QPalette palette = QGuiApplication::palette();
  QIcon made;
  for (const int pixels : {16, 20, 24, 32, 40, 48, 64}) {
    made.addPixmap(drawn(drawing, palette.color(QPalette::Active, QPalette::WindowText), pixels),
                   QIcon::Normal);
    made.addPixmap(drawn(drawing, palette.color(QPalette::Disabled, QPalette::WindowText), pixels),
                   QIcon::Disabled);
  }
  return made;
}

}  // namespace rowvane
