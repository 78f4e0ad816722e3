#include "ui/dialogs/password_box.h"

#include <QCheckBox>
#include <vector>

namespace rowvane {
namespace {

constexpr int kUsualWidth = 300;

}  // namespace

PasswordBox::PasswordBox(QWidget* parent) : QLineEdit(parent) {
  setEchoMode(Password);
  setMinimumWidth(kUsualWidth);
  setInputMethodHints(Qt::ImhSensitiveData | Qt::ImhNoPredictiveText | Qt::ImhNoAutoUppercase);
}

PasswordBox::~PasswordBox() {
  wipe();
}

Secret PasswordBox::secret() const {
  QByteArray bytes = text().toUtf8();
  Secret entered(std::string_view(bytes.constData(), static_cast<size_t>(bytes.size())));
  bytes.fill('\0');
  return entered;
}

Secret PasswordBox::take() {
  Secret entered = secret();
  wipe();
  return entered;
}

// The text of the box is overwritten where it lies: a copy of it shares its characters. Setting a text
// forgets what could be undone.
void PasswordBox::wipe() {
  const QString shared = text();
  auto* characters = const_cast<QChar*>(shared.constData());
  for (qsizetype i = 0; i < shared.size(); ++i) characters[i] = QChar(u'*');
  setText(QString());
}

QCheckBox* make_show_password(const std::initializer_list<PasswordBox*>& boxes, QWidget* parent) {
  auto* shown = new QCheckBox(PasswordBox::tr("&Show the password"), parent);
  QObject::connect(shown, &QCheckBox::toggled, parent, [all = std::vector(boxes)](bool on) {
    for (PasswordBox* box : all) box->setEchoMode(on ? QLineEdit::Normal : QLineEdit::Password);
  });
  return shown;
}

}  // namespace rowvane
