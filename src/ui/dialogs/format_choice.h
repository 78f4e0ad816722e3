// The list of the usual display formats, into which any other can be typed, with a preview.
#pragma once

#include <QComboBox>

#include "platform/regional_settings.h"

class QLabel;

namespace rowvane {

class FormatChoice final : public QComboBox {
  Q_OBJECT

 public:
  // USER_FORMATS: codes that were typed before. The preview shows VALUE as REGION writes it.
  FormatChoice(const std::vector<std::string>& user_formats, const platform::RegionalSettings& region,
               double value, QWidget* parent = nullptr);

  // The format code; empty for the default format.
  std::string code() const;
  void set_code(const std::string& code);
  // "1,234.50", or what is wrong with the code.
  QString preview() const;
  // True when the code was typed and can be used.
  bool is_users_own() const;

 private:
  platform::RegionalSettings region_;
  double value_;
};

}  // namespace rowvane
