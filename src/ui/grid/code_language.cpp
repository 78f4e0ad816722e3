#include "ui/grid/code_language.h"

#include <QRegularExpression>
#include <vector>

namespace rowvane {
namespace {

constexpr qsizetype kLookedAt = 4096;  // characters

struct Sign {
  const char* pattern;
  CodeLanguage language;
};

// The first sign that is found decides, so those that are sure stand before those that are likely.
constexpr Sign kSigns[] = {
    {R"(\A#!.*python)", CodeLanguage::kPython},
    {R"(\A#!.*node)", CodeLanguage::kJavaScript},
    {R"(\A#!.*sh\b)", CodeLanguage::kBash},
    {R"(\A<\?xml\b)", CodeLanguage::kXml},
    {R"(\A<(!doctype|[a-z]))", CodeLanguage::kHtml},
    {R"(\A[{\[]\s*("[^"\n]*"\s*[:,\]]|[\]}]|-?\d[\d.]*\s*[,\]]|[{\[]))", CodeLanguage::kJson},
    {R"(^\s*#\s*(include|define|pragma)\b)", CodeLanguage::kCpp},
    {R"(^\s*(def \w+\(.*|(class|if|for|while|with|try|elif|else)\b[^{};]*):\s*(#.*)?$)",
     CodeLanguage::kPython},
    {R"(^\s*(from [\w.]+ import\b|import [\w., ]+$))", CodeLanguage::kPython},
    {R"(\A(--.*\n\s*)*(select|insert\s+into|update|delete\s+from|create|alter|drop|with|pragma)\s)",
     CodeLanguage::kSql},
    {R"(\b(function\b.*\(|(const|let|var)\s+\w+\s*=|console\.\w+\(|=>))", CodeLanguage::kJavaScript},
    {R"(^\s*(template\s*<|namespace\s+\w+|using\s+namespace|(int|void)\s+\w+\s*\(|std::))",
     CodeLanguage::kCpp},
    {R"(^[^{}();=]+\{\s*[\w-]+\s*:[^{}]*\})", CodeLanguage::kCss},
    {R"(^\s*(echo|export|fi|done|esac)\b|\$\{?\w+)", CodeLanguage::kBash},
};

struct ReadySign {
  QRegularExpression pattern;
  CodeLanguage language;
};

std::vector<ReadySign> ready_signs() {
  std::vector<ReadySign> ready;
  for (const Sign& sign : kSigns) {
    ready.push_back({QRegularExpression(sign.pattern, QRegularExpression::MultilineOption |
                                                          QRegularExpression::CaseInsensitiveOption),
                     sign.language});
  }
  return ready;
}

}  // namespace

CodeLanguage guess_code_language(const QString& code) {
  static const std::vector<ReadySign> kReady = ready_signs();
  const QString begin = code.left(kLookedAt).trimmed();
  for (const ReadySign& sign : kReady) {
    if (sign.pattern.match(begin).hasMatch()) return sign.language;
  }
  return CodeLanguage::kNone;
}

}  // namespace rowvane
