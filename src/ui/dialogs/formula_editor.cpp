#include "ui/dialogs/formula_editor.h"

#include <QApplication>
#include <QEvent>
#include <QFontDatabase>
#include <QKeyEvent>
#include <algorithm>

#include "formula/fields/field_entry.h"
#include "formula/fields/formula_hooks.h"
#include "formula/functions/function_registry.h"
#include "formula/language/call_hint.h"
#include "ui/text.h"
#include "ui/theme.h"

namespace rowvane {
namespace {

constexpr char kNameSeparator = '\n';
constexpr int kMostOfferedNames = 200;

FormulaColors::Style style_of(const Token& token) {
  switch (token.kind) {
    case Kind::kNumber:
    case Kind::kArray:
      return FormulaColors::kNumber;
    case Kind::kText:
      return token.literal ? FormulaColors::kText : FormulaColors::kWrong;
    case Kind::kReference:
      return FormulaColors::kField;
    case Kind::kFunction:
      return FormulaColors::kFunction;
    default:
      return FormulaColors::kOperator;
  }
}

// As a formula has to name FIELD: a name that would not be read as one stands in quotes.
QString name_in_formula(const FieldNames& names, const std::string& name, size_t field) {
  const auto match = names.match(name);
  if (match && match->field == field && match->bytes == name.size()) return to_qt(name);
  return "$\"" + to_qt(name) + "\"";
}

QStringList all_names(const CWorkSheet* table) {
  QStringList all;
  if (table != nullptr) {
    const FieldNames names(*table);
    for (size_t i = 0; i < table->field_count(); ++i) all << name_in_formula(names, table->field(i).name, i);
  }
  for (size_t category = 0; category < kFunctionCategories; ++category) {
    for (const DocumentationEntry* entry : documented_functions(static_cast<FunctionCategory>(category)))
      all << QString::fromLatin1(entry->name) + "(";
  }
  all.sort(Qt::CaseInsensitive);
  return all;
}

}  // namespace

// ---- colours

FormulaColors::FormulaColors(const CWorkSheet* table, const FormulaSettings& settings, QObject* parent)
    : QsciLexerCustom(parent), lexer_(std::make_unique<FormulaLexer>(settings)) {
  lexer_->set_table(table);
}

QString FormulaColors::description(int style) const {
  static const QStringList names = {"Plain", "Number", "Text", "Field", "Function", "Operator", "Unknown"};
  return style >= 0 && style < kStyles ? names[style] : QString();
}

QColor FormulaColors::defaultColor(int style) const {
  const bool dark = is_dark(QApplication::palette().color(QPalette::Base));
  switch (style) {
    case kNumber:
      return dark ? QColor(0xE8B878) : QColor(0x8A4B08);
    case kText:
      return dark ? QColor(0x9CCC8A) : QColor(0x2E7031);
    case kField:
      return dark ? QColor(0x7FB2E8) : QColor(0x1F5FA8);
    case kFunction:
      return dark ? QColor(0xD2A8F0) : QColor(0x6B3FA0);
    case kWrong:
      return dark ? QColor(0xF0938F) : QColor(0xB3261E);
    default:
      return QApplication::palette().color(QPalette::Text);
  }
}

QColor FormulaColors::defaultPaper(int) const {
  return QApplication::palette().color(QPalette::Base);
}

QFont FormulaColors::defaultFont(int) const {
  return QFontDatabase::systemFont(QFontDatabase::FixedFont);
}

void FormulaColors::follow_palette() {
  setDefaultColor(defaultColor(kPlain));
  setDefaultPaper(defaultPaper(kPlain));
  for (int style = 0; style < kStyles; ++style) {
    setColor(defaultColor(style), style);
    setPaper(defaultPaper(style), style);
    setFont(defaultFont(style), style);
  }
}

// A formula is short: all of it is read each time.
void FormulaColors::styleText(int, int) {
  startStyling(0);
  style_formula(to_utf8(editor()->text()));
}

void FormulaColors::style_formula(const std::string& formula) {
  size_t cursor = formula.find_first_of("=+");
  cursor = cursor == std::string::npos ? 0 : cursor + 1;
  setStyling(static_cast<int>(cursor), kOperator);
  lexer_->start();
  Token token;
  while (cursor < formula.size()) {
    const size_t start = std::min(formula.find_first_not_of(" \r\n", cursor), formula.size());
    setStyling(static_cast<int>(start - cursor), kPlain);
    cursor = start;
    const Kind kind = lexer_->next_token(formula, cursor, token, SeparatorSet::kGeneric);
    const bool ends = kind == Kind::kError || kind == Kind::kEnd || cursor <= start;
    if (ends) cursor = formula.size();
    setStyling(static_cast<int>(cursor - start), ends ? kWrong : style_of(token));
  }
}

// ---- the box

FormulaEditor::FormulaEditor(int lines, const CWorkSheet* table, const FormulaSettings& settings,
                             QWidget* parent)
    : QsciScintilla(parent),
      table_(table),
      settings_(settings),
      colors_(new FormulaColors(table, settings, this)),
      names_(all_names(table)) {
  setUtf8(true);
  setEolMode(EolUnix);
  setLexer(colors_);
  for (int margin = 0; margin < 3; ++margin) setMarginWidth(margin, 0);
  setWrapMode(WrapWord);
  setBraceMatching(SloppyBraceMatch);
  SendScintilla(SCI_SETHSCROLLBAR, 0UL);
  SendScintilla(SCI_AUTOCSETSEPARATOR, static_cast<unsigned long>(kNameSeparator));
  SendScintilla(SCI_AUTOCSETIGNORECASE, 1UL);
  SendScintilla(SCI_AUTOCSETORDER, static_cast<unsigned long>(SC_ORDER_PRESORTED));
  SendScintilla(SCI_AUTOCSETDROPRESTOFWORD, 1UL);
  const QEvent palette(QEvent::PaletteChange);
  changeEvent(const_cast<QEvent*>(&palette));
  const int line = QFontMetrics(colors_->defaultFont(FormulaColors::kPlain)).lineSpacing();
  setFixedHeight(lines * line + 10);
  connect(this, &QsciScintilla::SCN_CHARADDED, this, &FormulaEditor::offer_names);
  connect(this, &QsciScintilla::cursorPositionChanged, this, &FormulaEditor::show_call_hint);
}

std::string FormulaEditor::formula() const {
  return stored_formula(to_utf8(text()));
}

void FormulaEditor::set_formula(const std::string& formula) {
  setText(to_qt(formula));
}

bool FormulaEditor::is_valid() const {
  const std::string entered = formula();
  return entered.empty() || is_valid_formula(entered, table_, settings_);
}

void FormulaEditor::insert_function(const QString& name) {
  const QString arguments = selectedText();
  const QString begin = to_utf8(text()).empty() || (hasSelectedText() && arguments == text()) ? "=" : "";
  replaceSelectedText(begin + name + "(" + (arguments.startsWith('=') ? arguments.mid(1) : arguments) + ")");
  SendScintilla(SCI_CHARLEFT);
  setFocus();
}

QString FormulaEditor::word_before_cursor() const {
  int line = 0;
  int column = 0;
  getCursorPosition(&line, &column);
  const QString before = text(line).left(column);
  qsizetype start = before.size();
  while (start > 0 && (before[start - 1].isLetterOrNumber() || before[start - 1] == '_')) --start;
  return before.mid(start);
}

QStringList FormulaEditor::completions() const {
  const QString word = word_before_cursor();
  QStringList found;
  if (word.isEmpty() || !word.front().isLetter()) return found;
  for (const QString& name : names_) {
    const bool begins = name.startsWith(word, Qt::CaseInsensitive);
    if (begins && found.size() < kMostOfferedNames) found << name;
  }
  return found;
}

void FormulaEditor::offer_names() {
  const QStringList found = completions();
  if (found.isEmpty() || (found.size() == 1 && found.front() == word_before_cursor()))
    return static_cast<void>(SendScintilla(SCI_AUTOCCANCEL));
  const QByteArray list = found.join(kNameSeparator).toUtf8();
  const auto length = static_cast<uintptr_t>(word_before_cursor().toUtf8().size());
  SendScintilla(SCI_AUTOCSHOW, length, list.constData());
}

QByteArray FormulaEditor::text_before_cursor() const {
  return QByteArray(bytes(0, static_cast<int>(SendScintilla(SCI_GETCURRENTPOS))));
}

// The parameters of the call around the cursor, unless a list of names is in the way.
void FormulaEditor::show_call_hint() {
  const QByteArray before = text_before_cursor();
  const auto hint = call_hint(before.toStdString(), settings_.generic);
  if (!hint || !hasFocus()) return static_cast<void>(SendScintilla(SCI_CALLTIPCANCEL));
  if (SendScintilla(SCI_AUTOCACTIVE) != 0) return;
  SendScintilla(SCI_CALLTIPSHOW, static_cast<uintptr_t>(before.size()), hint->text.c_str());
  SendScintilla(SCI_CALLTIPSETHLT, static_cast<unsigned long>(hint->begin), static_cast<long>(hint->end));
}

// Tab goes to the next control, Escape to the dialog, unless a list of names or a hint is shown.
void FormulaEditor::keyPressEvent(QKeyEvent* event) {
  const bool is_listing = SendScintilla(SCI_AUTOCACTIVE) != 0;
  const bool leaves =
      event->key() == Qt::Key_Tab || event->key() == Qt::Key_Backtab || event->key() == Qt::Key_Escape;
  const bool closes_hint = event->key() == Qt::Key_Escape && SendScintilla(SCI_CALLTIPACTIVE) != 0;
  if (is_listing || closes_hint || !leaves) return QsciScintilla::keyPressEvent(event);
  if (event->key() == Qt::Key_Escape) return event->ignore();
  // Past the overrides, which keep the key in the editor.
  QWidget::focusNextPrevChild(event->key() == Qt::Key_Tab);  // NOLINT(bugprone-parent-virtual-call)
}

bool FormulaEditor::focusNextPrevChild(bool) {
  return false;  // the key comes to keyPressEvent
}

void FormulaEditor::changeEvent(QEvent* event) {
  QsciScintilla::changeEvent(event);
  if (event->type() != QEvent::PaletteChange || colors_ == nullptr) return;
  colors_->follow_palette();
  setCaretForegroundColor(QApplication::palette().color(QPalette::Text));
  setSelectionBackgroundColor(QApplication::palette().color(QPalette::Highlight));
  setSelectionForegroundColor(QApplication::palette().color(QPalette::HighlightedText));
  setCallTipsBackgroundColor(QApplication::palette().color(QPalette::ToolTipBase));
  setCallTipsForegroundColor(QApplication::palette().color(QPalette::ToolTipText));
  setCallTipsHighlightColor(colors_->defaultColor(FormulaColors::kFunction));
}

}  // namespace rowvane
