// The programming language that a piece of code is most likely written in.
#pragma once

#include <QString>

namespace rowvane {

enum class CodeLanguage { kNone, kBash, kCpp, kCss, kHtml, kJavaScript, kJson, kPython, kSql, kXml };

// By what a reader sees first: a shebang, a tag, the first statements. kNone when nothing speaks for one.
CodeLanguage guess_code_language(const QString& code);

}  // namespace rowvane
