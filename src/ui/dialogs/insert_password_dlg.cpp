#include "ui/dialogs/insert_password_dlg.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "ui/dialogs.h"

namespace rowvane {

CInsertPasswordDlg::CInsertPasswordDlg(const QString& path, QWidget* parent)
    : QDialog(parent), password_(new QLineEdit(this)) {
  setWindowTitle(program_title());
  auto* layout = new QVBoxLayout(this);
  auto* label = new QLabel(tr("&Password for %1:").arg(QFileInfo(path).fileName()), this);
  label->setTextFormat(Qt::PlainText);
  label->setBuddy(password_);
  password_->setEchoMode(QLineEdit::Password);
  password_->setMinimumWidth(320);
  auto* shown = new QCheckBox(tr("&Show the password"), this);
  connect(shown, &QCheckBox::toggled, this,
          [this](bool on) { password_->setEchoMode(on ? QLineEdit::Normal : QLineEdit::Password); });
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  for (QWidget* row : std::initializer_list<QWidget*>{label, password_, shown, buttons})
    layout->addWidget(row);
}

Secret CInsertPasswordDlg::take_password() {
  std::string text = password_->text().toStdString();
  password_->clear();
  return Secret::take(text);
}

}  // namespace rowvane
