#include "ui/dialogs/text_field_list.h"

#include <QHeaderView>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/dialogs/text_columns_model.h"

namespace rowvane {
namespace {

constexpr int kFittedColumns = 200;  // those behind keep the usual width
constexpr int kLeastSampleWidth = 80;
constexpr int kMostSampleWidth = 260;

void prepare(QTableView& view) {
  view.setWordWrap(false);
  view.setTabKeyNavigation(false);
  view.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  view.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  view.verticalHeader()->setDefaultSectionSize(view.fontMetrics().height() + 8);
  view.verticalHeader()->setDefaultAlignment(Qt::AlignRight | Qt::AlignVCenter);
}

}  // namespace

CTextFieldList::CTextFieldList(QWidget* parent)
    : QWidget(parent),
      columns_(new TextColumnsModel(this)),
      records_(new TextSampleModel(this)),
      choices_(new QTableView(this)),
      sample_(new QTableView(this)) {
  prepare(*choices_);
  prepare(*sample_);
  choices_->setModel(columns_);
  choices_->setAccessibleName(tr("Fields"));
  choices_->setItemDelegateForRow(kTypeRow, new TypeChoiceDelegate(this));
  choices_->setEditTriggers(QAbstractItemView::SelectedClicked | QAbstractItemView::DoubleClicked |
                            QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
  choices_->setSelectionMode(QAbstractItemView::SingleSelection);
  choices_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  choices_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  choices_->setFrameShape(QFrame::NoFrame);
  sample_->setModel(records_);
  sample_->setAccessibleName(tr("File data sample"));
  sample_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  sample_->setAlternatingRowColors(true);
  sample_->horizontalHeader()->hide();
  sample_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  sample_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  sample_->setFrameShape(QFrame::NoFrame);
  const int scroll_bar = sample_->verticalScrollBar()->sizeHint().width();
  auto* upper = new QHBoxLayout();
  upper->addWidget(choices_);
  upper->addSpacing(scroll_bar);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addLayout(upper);
  layout->addWidget(sample_, 1);
  setFocusProxy(choices_);
  align_headers();

  connect(choices_->horizontalHeader(), &QHeaderView::sectionResized, this,
          [this](int column, int, int width) { sample_->setColumnWidth(column, width); });
  connect(sample_->horizontalScrollBar(), &QScrollBar::valueChanged, choices_->horizontalScrollBar(),
          &QScrollBar::setValue);
  connect(choices_->horizontalScrollBar(), &QScrollBar::valueChanged, sample_->horizontalScrollBar(),
          &QScrollBar::setValue);
  connect(choices_, &QTableView::clicked, this, [this](const QModelIndex& index) {
    if (index.row() == kTypeRow) choices_->edit(index);
  });
  connect(columns_, &TextColumnsModel::dataChanged, this, &CTextFieldList::changed);
}

// Both tables begin at the same place.
void CTextFieldList::align_headers() {
  const int width = choices_->fontMetrics().horizontalAdvance(tr("Parse Dates")) + 16;
  choices_->verticalHeader()->setFixedWidth(width);
  sample_->verticalHeader()->setFixedWidth(width);
  const int rows = kChoiceRows * choices_->verticalHeader()->defaultSectionSize();
  choices_->setFixedHeight(choices_->horizontalHeader()->sizeHint().height() + rows +
                           2 * choices_->frameWidth());
}

void CTextFieldList::fit_columns() {
  const QFontMetrics metrics = fontMetrics();
  const int columns = std::min(columns_->columnCount(), kFittedColumns);
  for (int column = 0; column < columns; ++column) {
    int width =
        metrics.horizontalAdvance(columns_->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString());
    for (int row = 0; row < std::min(records_->rowCount(), 20); ++row)
      width =
          std::max(width, metrics.horizontalAdvance(records_->index(row, column).data().toString().left(80)));
    choices_->setColumnWidth(column, std::clamp(width + 16, kLeastSampleWidth, kMostSampleWidth));
  }
}

void CTextFieldList::show_sample(std::shared_ptr<const CWorkSheet> sample) {
  const int place = sample_->horizontalScrollBar()->value();
  const bool other_columns = columns_->columnCount() != static_cast<int>(sample->field_count());
  const QModelIndex current = choices_->currentIndex();
  const int row = current.row();
  const int column = current.column();
  columns_->show_columns(sample);
  records_->show_records(std::move(sample));
  align_headers();
  if (other_columns) {
    fit_columns();
  } else {
    sample_->horizontalScrollBar()->setValue(place);
  }
  if (row >= 0 && column < columns_->columnCount()) choices_->setCurrentIndex(columns_->index(row, column));
}

void CTextFieldList::clear_sample() {
  columns_->show_columns(nullptr);
  records_->show_records(nullptr);
}

const CTextFieldList::ColumnOptions& CTextFieldList::column_options() const {
  return columns_->options();
}

void CTextFieldList::set_column_options(const ColumnOptions& options) {
  columns_->set_options(options);
}

}  // namespace rowvane
