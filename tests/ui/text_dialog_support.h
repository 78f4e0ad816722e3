// What the tests of the dialogs for text files share.
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace rowvane {

// The control of PARENT whose text, or whose label's or own accessible name, begins with NAME.
template <typename Control>
Control* find_control(QWidget& parent, const QString& name) {
  for (auto* control : parent.findChildren<Control*>()) {
    QString text = control->accessibleName();
    if constexpr (requires { control->text(); })
      if (text.isEmpty()) text = control->text();
    if (text.startsWith(name)) return control;
  }
  for (auto* label : parent.findChildren<QLabel*>()) {
    auto* control = qobject_cast<Control*>(label->buddy());
    if (control != nullptr && label->text().startsWith(name)) return control;
  }
  return nullptr;
}

class TextFileFolder {
 public:
  QString write(const QString& name, const QByteArray& content) {
    const QString path = folder_.filePath(name);
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    return path;
  }
  QString path(const QString& name) const { return folder_.filePath(name); }

 private:
  QTemporaryDir folder_;
};

}  // namespace rowvane
