#include "ui/grid/code_editor.h"

#include <QFontDatabase>

#include <Qsci/qscilexerbash.h>
#include <Qsci/qscilexercpp.h>
#include <Qsci/qscilexercss.h>
#include <Qsci/qscilexerhtml.h>
#include <Qsci/qscilexerjavascript.h>
#include <Qsci/qscilexerjson.h>
#include <Qsci/qscilexerpython.h>
#include <Qsci/qscilexersql.h>
#include <Qsci/qscilexerxml.h>

#include "ui/theme.h"

namespace rowvane {
namespace {

constexpr int kStyles = 128;  // of a lexer
// Lightness of a text that can be read on a dark and on a light ground.
constexpr int kLeastOnDark = 165;
constexpr int kMostOnLight = 120;

QsciLexer* make_lexer(CodeLanguage language, QObject* parent) {
  switch (language) {
    case CodeLanguage::kBash:
      return new QsciLexerBash(parent);
    case CodeLanguage::kCpp:
      return new QsciLexerCPP(parent);
    case CodeLanguage::kCss:
      return new QsciLexerCSS(parent);
    case CodeLanguage::kHtml:
      return new QsciLexerHTML(parent);
    case CodeLanguage::kJavaScript:
      return new QsciLexerJavaScript(parent);
    case CodeLanguage::kJson:
      return new QsciLexerJSON(parent);
    case CodeLanguage::kPython:
      return new QsciLexerPython(parent);
    case CodeLanguage::kSql:
      return new QsciLexerSQL(parent);
    case CodeLanguage::kXml:
      return new QsciLexerXML(parent);
    case CodeLanguage::kNone:
      break;
  }
  return nullptr;
}

// The same hue, light or dark enough for its ground.
QColor readable(const QColor& color, bool on_dark) {
  const int lightness = color.lightness();
  const int wanted = on_dark ? std::max(lightness, kLeastOnDark) : std::min(lightness, kMostOnLight);
  return QColor::fromHsl(color.hslHue(), color.hslSaturation(), wanted);
}

}  // namespace

CodeEditor::CodeEditor(const QFont& font, QWidget* parent)
    : QsciScintilla(parent), fixed_(QFontDatabase::systemFont(QFontDatabase::FixedFont)) {
  fixed_.setPointSizeF(font.pointSizeF());
  setFont(fixed_);
  setUtf8(true);
  setEolMode(EolUnix);
  setMarginsFont(fixed_);
  setMarginType(0, NumberMargin);
  setMarginWidth(0, "0000");
  setMarginWidth(1, 0);
  setScrollWidth(1);
  setScrollWidthTracking(true);
  setTabWidth(4);
  setIndentationsUseTabs(false);
  setAutoIndent(true);
  setBraceMatching(SloppyBraceMatch);
  set_language(CodeLanguage::kNone);
  connect(this, &QsciScintilla::textChanged, this, &CodeEditor::follow_text);
}

void CodeEditor::set_code(const QString& code) {
  setText(code);
  SendScintilla(SCI_EMPTYUNDOBUFFER);
}

void CodeEditor::resizeEvent(QResizeEvent* event) {
  QsciScintilla::resizeEvent(event);
  SendScintilla(SCI_SETXOFFSET, 0UL);
  ensureCursorVisible();
}

void CodeEditor::follow_text() {
  const CodeLanguage guessed = guess_code_language(text());
  if (guessed != language_) set_language(guessed);
}

void CodeEditor::set_language(CodeLanguage language) {
  language_ = language;
  QsciLexer* const former = lexer();
  QsciLexer* const present = make_lexer(language, this);
  if (present != nullptr) show_lexer(present);
  setLexer(present);
  delete former;
  const QPalette colors = palette();
  if (present == nullptr) {
    setPaper(colors.color(QPalette::Base));
    setColor(colors.color(QPalette::Text));
    setFont(fixed_);
  }
  setCaretForegroundColor(colors.color(QPalette::Text));
  setMarginsBackgroundColor(colors.color(QPalette::Window));
  setMarginsForegroundColor(colors.color(QPalette::Disabled, QPalette::Text));
}

void CodeEditor::show_lexer(QsciLexer* lexer) {
  const QColor ground = palette().color(QPalette::Base);
  const bool on_dark = is_dark(ground);
  lexer->setDefaultPaper(ground);
  lexer->setDefaultColor(palette().color(QPalette::Text));
  lexer->setDefaultFont(fixed_);
  for (int style = 0; style < kStyles; ++style) {
    if (lexer->description(style).isEmpty()) continue;
    QFont font = fixed_;
    font.setBold(lexer->defaultFont(style).bold());
    lexer->setColor(readable(lexer->defaultColor(style), on_dark), style);
    lexer->setPaper(ground, style);
    lexer->setFont(font, style);
  }
}

}  // namespace rowvane
