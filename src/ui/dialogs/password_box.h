// A box for a password, which leaves no trace of it when it has been used.
#pragma once

#include <QLineEdit>

#include "crypto/secret.h"

class QCheckBox;

namespace rowvane {

class PasswordBox final : public QLineEdit {
  Q_OBJECT

 public:
  explicit PasswordBox(QWidget* parent = nullptr);
  ~PasswordBox() override;

  // What was entered, as UTF-8.
  Secret secret() const;
  // The same; the box is empty afterwards, and nothing in it can be undone.
  Secret take();
  void wipe();
};

// "Show the password", for all of these boxes.
QCheckBox* make_show_password(const std::initializer_list<PasswordBox*>& boxes, QWidget* parent);

}  // namespace rowvane
