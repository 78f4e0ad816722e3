#include "ui/dialogs/open_text_file_dlg.h"

#include <QDialogButtonBox>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include "file/document.h"
#include "ui/dialogs.h"
#include "ui/text.h"

namespace rowvane {
namespace {

constexpr uint32_t kSampleRecords = 50;
constexpr size_t kSampleFields = 200;

}  // namespace

COpenTextFileDlg::COpenTextFileDlg(const QString& path, QWidget* parent)
    : QDialog(parent),
      path_(to_utf8(path)),
      settings_(suggested_text_settings(path_)),
      box_(new TextSettingsBox(TextSettingsBox::Use::kOpen, this)),
      fields_(new CTextFieldList(this)),
      sample_(new QTableWidget(this)),
      problem_(new QLabel(this)) {
  setWindowTitle(tr("Open Text File") + " - " + QFileInfo(path).fileName());
  resize(860, 620);
  sample_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  sample_->setSelectionMode(QAbstractItemView::NoSelection);
  problem_->setTextFormat(Qt::PlainText);
  auto* upper = new QHBoxLayout();
  upper->addWidget(box_, 1);
  upper->addWidget(fields_, 1);
  auto* label = new QLabel(tr("File data &sample:"), this);
  label->setBuddy(sample_);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  QPushButton* reload_button = buttons->addButton(tr("Reload fields"), QDialogButtonBox::ActionRole);
  connect(reload_button, &QPushButton::clicked, this, &COpenTextFileDlg::reload);
  connect(buttons, &QDialogButtonBox::accepted, this, &COpenTextFileDlg::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(upper, 1);
  layout->addWidget(label);
  layout->addWidget(sample_, 1);
  layout->addWidget(problem_);
  layout->addWidget(buttons);
  box_->show_settings(settings_);
  connect(box_, &TextSettingsBox::changed, this, &COpenTextFileDlg::reload);
  reload();
}

QString COpenTextFileDlg::problem() const {
  return to_qt(check_text_settings_controls(box_->controls()));
}

void COpenTextFileDlg::reload() {
  fields_->read_choices(settings_);
  problem_->setText(problem());
  if (!problem_->text().isEmpty()) return;
  settings_ = read_text_settings(box_->controls(), settings_);
  TextImport import;
  import.text = settings_;
  const TextImportResult result = import_text_sample(path_, import, kSampleRecords);
  if (result.table == nullptr) {
    problem_->setText(to_qt(error_text(result.error)));
    return;
  }
  const CWorkSheet& table = *result.table;
  fields_->show_fields(table, settings_);
  sample_->setColumnCount(static_cast<int>(std::min(table.field_count(), kSampleFields)));
  sample_->setRowCount(static_cast<int>(table.record_count()));
  for (int column = 0; column < sample_->columnCount(); ++column) {
    const auto field = static_cast<size_t>(column);
    sample_->setHorizontalHeaderItem(column, new QTableWidgetItem(to_qt(table.field(field).name)));
    for (int row = 0; row < sample_->rowCount(); ++row) {
      const std::string text = table.value_text(static_cast<uint32_t>(row) + 1, field);
      sample_->setItem(row, column, new QTableWidgetItem(to_qt(text).left(200)));
    }
  }
}

void COpenTextFileDlg::accept() {
  if (!problem().isEmpty()) return;
  fields_->read_choices(settings_);
  settings_ = read_text_settings(box_->controls(), settings_);
  QDialog::accept();
}

}  // namespace rowvane
