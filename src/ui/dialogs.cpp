#include "ui/dialogs.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>

#include "core/messages/messages.h"
#include "ui/dialogs/insert_password_dlg.h"
#include "ui/text.h"

namespace rowvane {
namespace {

QMessageBox::Icon icon_of(MessageIcon icon) {
  switch (icon) {
    case MessageIcon::kInformation:
      return QMessageBox::Information;
    case MessageIcon::kWarning:
      return QMessageBox::Warning;
    case MessageIcon::kError:
      break;
  }
  return QMessageBox::Critical;
}

void keep_filter(const FileChoice& choice, const QStringList& filters, const QString& filter) {
  const auto place = static_cast<int>(filters.indexOf(filter)) + 1;
  if (choice.filter != nullptr && place > 0) *choice.filter = place;
}

}  // namespace

QString program_title() {
  return to_qt(message(MessageId::kProgramTitle));
}

bool Dialogs::accept(const Check& check) {
  if (!check.passes()) {
    if (check.beeps) {
      QApplication::beep();
    } else {
      show(check.refusal.text(), MessageIcon::kWarning);
    }
    return false;
  }
  if (!check.question.empty() && !ask(check.question.text())) return false;
  if (!check.notice.empty()) show(check.notice.text(), MessageIcon::kWarning);
  return true;
}

bool Dialogs::report(const Outcome& outcome) {
  if (!outcome.cancelled && !outcome.failure.empty()) show(outcome.failure.text(), MessageIcon::kError);
  for (const UserText& notice : outcome.notices) show(notice.text(), MessageIcon::kInformation);
  return outcome.is_done();
}

bool MessageBoxes::ask(const std::string& question) {
  QMessageBox box(QMessageBox::Warning, program_title(), to_qt(question), QMessageBox::Yes | QMessageBox::No,
                  parent_);
  box.setTextFormat(Qt::PlainText);
  box.setDefaultButton(QMessageBox::No);
  return box.exec() == QMessageBox::Yes;
}

void MessageBoxes::show(const std::string& text, MessageIcon icon) {
  QMessageBox box(icon_of(icon), program_title(), to_qt(text), QMessageBox::Ok, parent_);
  box.setTextFormat(Qt::PlainText);
  box.exec();
}

std::optional<Secret> MessageBoxes::ask_password(const std::string& path) {
  CInsertPasswordDlg dialog(to_qt(path), parent_);
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return dialog.take_password();
}

SaveAnswer MessageBoxes::ask_save(const QString& question) {
  QMessageBox box(QMessageBox::Question, program_title(), question,
                  QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, parent_);
  box.setTextFormat(Qt::PlainText);
  box.setDefaultButton(QMessageBox::Yes);
  switch (box.exec()) {
    case QMessageBox::Yes:
      return SaveAnswer::kSave;
    case QMessageBox::No:
      return SaveAnswer::kDiscard;
    default:
      return SaveAnswer::kCancel;
  }
}

int MessageBoxes::choose(const QString& question, const QStringList& buttons) {
  QMessageBox box(QMessageBox::Question, program_title(), question, QMessageBox::NoButton, parent_);
  box.setTextFormat(Qt::PlainText);
  QList<QAbstractButton*> added;
  for (const QString& text : buttons) added << box.addButton(text, QMessageBox::AcceptRole);
  box.setDefaultButton(static_cast<QPushButton*>(added.first()));
  box.setEscapeButton(added.last());
  box.exec();
  return static_cast<int>(added.indexOf(box.clickedButton()));
}

QString MessageBoxes::choose_file_to_open(const FileChoice& choice) {
  const QStringList filters = choice.filters.split(";;");
  QString filter = choice.filter == nullptr ? QString() : filters.value(*choice.filter - 1);
  QString path = QFileDialog::getOpenFileName(parent_, choice.title, choice.path, choice.filters, &filter);
  if (!path.isEmpty()) keep_filter(choice, filters, filter);
  return path;
}

QString MessageBoxes::choose_file_to_save(const FileChoice& choice) {
  const QStringList filters = choice.filters.split(";;");
  QFileDialog dialog(parent_, choice.title, QFileInfo(choice.path).path(), choice.filters);
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(choice.extension);
  if (choice.filter != nullptr) dialog.selectNameFilter(filters.value(*choice.filter - 1));
  dialog.selectFile(QFileInfo(choice.path).fileName());
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
  keep_filter(choice, filters, dialog.selectedNameFilter());
  return dialog.selectedFiles().first();
}

std::optional<QString> MessageBoxes::ask_text(const QString& title, const QString& label,
                                              const QString& text) {
  bool accepted = false;
  QString entered = QInputDialog::getText(parent_, title, label, QLineEdit::Normal, text, &accepted);
  return accepted ? std::optional(std::move(entered)) : std::nullopt;
}

}  // namespace rowvane
