#include "ui/dialogs/record_flag_types_dlg.h"

#include <QColorDialog>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <array>

#include "ui/dialogs.h"
#include "ui/text.h"

namespace rowvane {
namespace {

enum FlagRole { kFormerFlagRole = Qt::UserRole, kFlagColorRole };
constexpr int kNewType = -1;
constexpr int kIconSize = 32;

// Those that new types get in turn.
constexpr std::array<uint32_t, kMaxRecordFlagTypes> kColors = {
    0xD64545, 0xE08A1E, 0xD8B400, 0x3F9E4D, 0x2A9D8F, 0x2F6FB3, 0x6B4FBB, 0xB0489C, 0x7A5C42, 0x6B7280};

}  // namespace

QIcon flag_icon(uint32_t color) {
  QPixmap square(kIconSize, kIconSize);
  square.fill(Qt::transparent);
  QPainter painter(&square);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor::fromRgb(color));
  painter.drawRoundedRect(QRect(4, 4, kIconSize - 8, kIconSize - 8), 5, 5);
  return square;
}

CRecordFlagTypesDlg::CRecordFlagTypesDlg(Database& database, Dialogs& dialogs, QWidget* parent)
    : QDialog(parent), database_(database), dialogs_(dialogs), types_(new QListWidget(this)) {
  setWindowTitle(tr("Record Flag Types"));
  resize(380, 300);
  auto* label = new QLabel(tr("&Flags:"), this);
  label->setBuddy(types_);
  types_->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                          QAbstractItemView::SelectedClicked);
  const auto& present = database.settings().record_flag_types;
  for (size_t i = 0; i < present.size(); ++i) add_item(present[i], static_cast<int>(i));
  types_->setCurrentRow(0);
  auto* column = new QVBoxLayout();
  add_button(*column, tr("&Add"), &CRecordFlagTypesDlg::add_type);
  add_button(*column, tr("&Color..."), &CRecordFlagTypesDlg::choose_color);
  add_button(*column, tr("&Delete"), &CRecordFlagTypesDlg::delete_type);
  for (const auto& [text, by] : {std::pair(tr("&Up"), -1), std::pair(tr("Do&wn"), 1)}) {
    QPushButton* button = add_button(*column, text, nullptr);
    connect(button, &QPushButton::clicked, this, [this, step = by] { move_type(step); });
  }
  column->addStretch(1);
  auto* row = new QHBoxLayout();
  row->addWidget(types_, 1);
  row->addLayout(column);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &CRecordFlagTypesDlg::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(label);
  layout->addLayout(row, 1);
  layout->addWidget(buttons);
}

QPushButton* CRecordFlagTypesDlg::add_button(QLayout& layout, const QString& text,
                                             void (CRecordFlagTypesDlg::*step)()) {
  auto* button = new QPushButton(text, this);
  button->setAutoDefault(false);
  if (step != nullptr) connect(button, &QPushButton::clicked, this, step);
  layout.addWidget(button);
  return button;
}

void CRecordFlagTypesDlg::add_item(const RecordFlagType& type, int former) {
  auto* item = new QListWidgetItem(flag_icon(type.color), to_qt(type.name), types_);
  item->setFlags(item->flags() | Qt::ItemIsEditable);
  item->setData(kFormerFlagRole, former);
  item->setData(kFlagColorRole, type.color);
}

EditedFlagTypes CRecordFlagTypesDlg::types() const {
  EditedFlagTypes types;
  for (int row = 0; row < types_->count(); ++row) {
    const QListWidgetItem& item = *types_->item(row);
    const int former = item.data(kFormerFlagRole).toInt();
    types.push_back({{to_utf8(item.text()), item.data(kFlagColorRole).toUInt()},
                     former == kNewType ? std::nullopt : std::optional(static_cast<size_t>(former))});
  }
  return types;
}

void CRecordFlagTypesDlg::add_type() {
  const auto count = static_cast<size_t>(types_->count());
  if (!dialogs_.accept(check_record_flag_types(count + 1))) return;
  QString name;
  for (int number = 1; name.isEmpty() || !types_->findItems(name, Qt::MatchFixedString).isEmpty(); ++number)
    name = tr("Flag %1").arg(number);
  add_item({to_utf8(name), kColors[count % kColors.size()]}, kNewType);
  types_->setCurrentRow(types_->count() - 1);
  types_->editItem(types_->currentItem());
}

void CRecordFlagTypesDlg::delete_type() {
  delete types_->takeItem(types_->currentRow());
}

void CRecordFlagTypesDlg::set_color(const QColor& color) {
  QListWidgetItem* item = types_->currentItem();
  if (item == nullptr || !color.isValid()) return;
  const uint32_t rgb = color.rgb() & 0xFFFFFF;
  item->setData(kFlagColorRole, rgb);
  item->setIcon(flag_icon(rgb));
}

void CRecordFlagTypesDlg::choose_color() {
  const QListWidgetItem* item = types_->currentItem();
  if (item == nullptr) return;
  set_color(QColorDialog::getColor(QColor::fromRgb(item->data(kFlagColorRole).toUInt()), this, tr("Color")));
}

void CRecordFlagTypesDlg::move_type(int by) {
  const int row = types_->currentRow();
  const int target = row + by;
  if (row < 0 || target < 0 || target >= types_->count()) return;
  types_->insertItem(target, types_->takeItem(row));
  types_->setCurrentRow(target);
}

void CRecordFlagTypesDlg::accept() {
  const EditedFlagTypes edited = types();
  if (!dialogs_.accept(check_record_flag_types(edited))) return;
  if (dialogs_.report(change_record_flag_types(database_, edited))) QDialog::accept();
}

}  // namespace rowvane
