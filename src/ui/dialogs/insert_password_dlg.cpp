#include "ui/dialogs/insert_password_dlg.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QLabel>
#include <QVBoxLayout>

#include "ui/dialogs.h"

namespace rowvane {

CInsertPasswordDlg::CInsertPasswordDlg(const QString& path, QWidget* parent)
    : QDialog(parent), password_(new PasswordBox(this)) {
  setWindowTitle(program_title());
  auto* layout = new QVBoxLayout(this);
  auto* label = new QLabel(tr("&Password for %1:").arg(QFileInfo(path).fileName()), this);
  label->setTextFormat(Qt::PlainText);
  label->setBuddy(password_);
  auto* shown = make_show_password({password_}, this);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  for (QWidget* row : std::initializer_list<QWidget*>{label, password_, shown, buttons})
    layout->addWidget(row);
  password_->setFocus();
}

Secret CInsertPasswordDlg::take_password() {
  return password_->take();
}

}  // namespace rowvane
