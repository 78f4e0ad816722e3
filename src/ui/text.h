// Texts between the engine, which holds UTF-8, and Qt.
#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace rowvane {

inline QString to_qt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::string to_utf8(const QString& text) {
  return text.toStdString();
}

}  // namespace rowvane
