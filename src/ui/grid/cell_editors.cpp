#include "ui/grid/cell_editors.h"

#include <QAction>
#include <QCalendarWidget>
#include <QComboBox>
#include <QDate>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QVBoxLayout>
#include <cmath>

#include "ui/grid/code_editor.h"
#include "ui/grid/editor_keys.h"
#include "ui/icons.h"
#include "ui/text.h"

namespace rowvane {
namespace {

const QDate kDayZero(1899, 12, 30);
constexpr QSize kTextEditorSize(360, 150);
constexpr QSize kCodeEditorSize(520, 220);

void set_line(QLineEdit& line, const QString& text, bool whole) {
  line.setText(text);
  whole ? line.selectAll() : line.end(false);
}

// ---- one line

class LineEditor : public QLineEdit, public CellEditor {
 public:
  LineEditor(const EditorSettings& settings, QWidget* parent) : QLineEdit(parent) {
    setFrame(false);
    if (settings.field->type == FieldType::kNumber) setAlignment(Qt::AlignRight);
  }

  QString text() const override { return QLineEdit::text(); }
  void set_text(const QString& text, bool whole) override { set_line(*this, text, whole); }
  void insert(const QString& text) override { QLineEdit::insert(text); }
  bool needs(const QKeyEvent& key) const override {
    return key.key() == Qt::Key_Left || key.key() == Qt::Key_Right;
  }
  // As wide as its text.
  QSize wanted_size(QSize size) const override {
    const int width = fontMetrics().horizontalAdvance(QLineEdit::text().left(400)) + 24;
    return {std::max(size.width(), std::min(width, 500)), size.height()};
  }
};

// ---- one of a list, or any other text

class ListEditor final : public QComboBox, public CellEditor {
 public:
  ListEditor(const DropDownList& choices, QWidget* parent) : QComboBox(parent) {
    setEditable(true);
    setInsertPolicy(NoInsert);
    setCompleter(nullptr);  // which would change what is typed into one of the items
    setFrame(false);
    for (const std::string& item : choices.items) addItem(to_qt(item));
    setMaxVisibleItems(15);
  }

  QString text() const override { return currentText(); }
  void set_text(const QString& text, bool whole) override {
    setCurrentIndex(findText(text));
    set_line(*lineEdit(), text, whole);
  }
  void insert(const QString& text) override { lineEdit()->insert(text); }
  void open_choices() override { showPopup(); }
  bool needs(const QKeyEvent& key) const override { return is_arrow(key.key()); }
  QSize wanted_size(QSize size) const override { return {std::max(size.width(), 140), size.height()}; }
};

// ---- a date, typed or chosen

class DateEditor final : public LineEditor {
 public:
  DateEditor(const EditorSettings& settings, QWidget* parent)
      : LineEditor(settings, parent), read_(settings.read_number), write_(settings.write_number) {
    QAction* open = addAction(icon("calendar"), QLineEdit::TrailingPosition);
    open->setToolTip(QObject::tr("Choose a date (Alt+Down)"));
    connect(open, &QAction::triggered, this, [this] { open_choices(); });
  }

  void open_choices() override {
    auto* popup = new QFrame(this, Qt::Popup);
    popup->setAttribute(Qt::WA_DeleteOnClose);
    popup->setFrameShape(QFrame::StyledPanel);
    auto* layout = new QVBoxLayout(popup);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* calendar = new QCalendarWidget(popup);
    calendar->setAccessibleName(QObject::tr("Date"));
    calendar->setSelectedDate(date());
    layout->addWidget(calendar);
    connect(calendar, &QCalendarWidget::activated, this, [this, popup](QDate day) {
      take(day);
      popup->close();
    });
    connect(calendar, &QCalendarWidget::clicked, this, [this, popup](QDate day) {
      take(day);
      popup->close();
    });
    popup->move(mapToGlobal(QPoint(0, height())));
    popup->show();
    calendar->setFocus();
  }
  QSize wanted_size(QSize size) const override { return {std::max(size.width(), 130), size.height()}; }

 private:
  QDate date() const {
    const auto number = read_(QLineEdit::text());
    const QDate day = number ? kDayZero.addDays(static_cast<qint64>(std::floor(*number))) : QDate();
    return day.isValid() ? day : QDate::currentDate();
  }
  // The time of day stays.
  void take(QDate day) {
    const double former = read_(QLineEdit::text()).value_or(0);
    const double time = former - std::floor(former);
    setText(write_(static_cast<double>(kDayZero.daysTo(day)) + time));
    setFocus();
  }

  std::function<std::optional<double>(const QString&)> read_;
  std::function<QString(double)> write_;
};

// ---- several lines

bool is_plain_enter(const QKeyEvent& key) {
  const bool enter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
  return enter && !key.modifiers().testFlag(Qt::ControlModifier);
}

class TextEditor final : public QPlainTextEdit, public CellEditor {
 public:
  explicit TextEditor(QWidget* parent) : QPlainTextEdit(parent) { setTabChangesFocus(true); }

  QString text() const override { return toPlainText(); }
  void set_text(const QString& text, bool whole) override {
    setPlainText(text);
    whole ? selectAll() : moveCursor(QTextCursor::End);
  }
  void insert(const QString& text) override { insertPlainText(text); }
  bool needs(const QKeyEvent& key) const override { return is_plain_enter(key) || is_arrow(key.key()); }
  QSize wanted_size(QSize size) const override { return size.expandedTo(kTextEditorSize); }
};

class CodeCellEditor final : public CodeEditor, public CellEditor {
 public:
  using CodeEditor::CodeEditor;

  QString text() const override { return QsciScintilla::text(); }
  void set_text(const QString& text, bool whole) override {
    set_code(text);
    if (whole) return selectAll();
    const int last = lines() - 1;
    setCursorPosition(last, lineLength(last));
  }
  void insert(const QString& text) override { replaceSelectedText(text); }
  bool needs(const QKeyEvent& key) const override {
    return is_plain_enter(key) || is_arrow(key.key()) || key.key() == Qt::Key_Tab;
  }
  QSize wanted_size(QSize size) const override { return size.expandedTo(kCodeEditorSize); }
};

}  // namespace

QWidget* make_cell_editor(const EditorSettings& settings, QWidget* parent) {
  QWidget* editor = nullptr;
  switch (settings.field->type) {
    case FieldType::kLongText:
      editor = new TextEditor(parent);
      break;
    case FieldType::kCode:
      editor = new CodeCellEditor(settings.font, parent);
      break;
    default:
      if (settings.choices != nullptr) {
        editor = new ListEditor(*settings.choices, parent);
      } else if (settings.date_picker) {
        editor = new DateEditor(settings, parent);
      } else {
        editor = new LineEditor(settings, parent);
      }
  }
  if (settings.field->type != FieldType::kCode) editor->setFont(settings.font);
  editor->setAutoFillBackground(true);
  editor->setAccessibleName(to_qt(settings.field->name));
  return editor;
}

CellEditor* as_cell_editor(QWidget* widget) {
  return dynamic_cast<CellEditor*>(widget);
}

}  // namespace rowvane
