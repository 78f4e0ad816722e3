// The box for program code: colours by language, line numbers, matching braces.
#pragma once

#include <Qsci/qsciscintilla.h>

#include "ui/grid/code_language.h"

namespace rowvane {

class CodeEditor : public QsciScintilla {
  Q_OBJECT

 public:
  // In a font of fixed width, as large as FONT, and in the colours of PARENT.
  CodeEditor(const QFont& font, QWidget* parent);

  // CODE replaces the text; it can't be undone in the editor.
  void set_code(const QString& code);
  CodeLanguage code_language() const { return language_; }

 protected:
  // What scrolled out of a small box comes back into a larger one.
  void resizeEvent(QResizeEvent* event) override;

 private:
  // Colours follow the text as it is typed.
  void follow_text();
  void set_language(CodeLanguage language);
  void show_lexer(QsciLexer* lexer);

  QFont fixed_;
  CodeLanguage language_ = CodeLanguage::kNone;
};

}  // namespace rowvane
