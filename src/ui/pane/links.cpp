#include "ui/pane/links.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace rowvane {
namespace {

const QStringList kSchemes = {"http", "https", "ftp", "ftps", "sftp", "mailto", "tel", "file"};

bool looks_like_mail(const QString& text) {
  static const QRegularExpression kMail(R"(^[^@\s/\\]+@[^@\s/\\]+\.[^@\s/\\.]+$)");
  return kMail.match(text).hasMatch();
}

bool looks_like_host(const QString& text) {
  static const QRegularExpression kHost(R"(^([\w-]+\.)+[a-z]{2,}(:\d+)?([/?#]\S*)?$)",
                                        QRegularExpression::CaseInsensitiveOption);
  return kHost.match(text).hasMatch();
}

}  // namespace

QUrl link_target(const QString& text, const QString& folder) {
  const QString link = text.trimmed();
  if (link.isEmpty()) return {};
  const QString path = QDir::fromNativeSeparators(link);
  const QFileInfo file(QDir(folder), path);
  if (QDir::isAbsolutePath(path) || file.exists()) return QUrl::fromLocalFile(file.absoluteFilePath());
  if (looks_like_mail(link)) return QUrl("mailto:" + link);
  if (link.startsWith("www.", Qt::CaseInsensitive) || looks_like_host(link)) return QUrl("https://" + link);
  const QUrl url(link, QUrl::StrictMode);
  return url.isValid() && kSchemes.contains(url.scheme().toLower()) ? url : QUrl();
}

OpenLink& link_opener() {
  static OpenLink opener = [](const QUrl& url) { return QDesktopServices::openUrl(url); };
  return opener;
}

}  // namespace rowvane
