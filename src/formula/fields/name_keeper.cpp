#include "formula/fields/name_keeper.h"

#include <algorithm>
#include <memory>

#include "core/database/database.h"
#include "formula/language/formula_lexer.h"
#include "formula/language/table_names.h"
#include "platform/characters.h"
#include "platform/utf8.h"
#include "text/folded_text.h"

namespace rowvane {
namespace {

// A token and where it stands.
struct PlacedToken {
  Token token;
  size_t start = 0;
  size_t end = 0;

  std::string_view of(std::string_view formula) const { return formula.substr(start, end - start); }
};

// Empty for a formula that can't be read.
std::vector<PlacedToken> tokens_of(std::string_view formula, FormulaLexer& lexer) {
  std::vector<PlacedToken> tokens;
  lexer.start();
  for (size_t cursor = 1; cursor < formula.size();) {
    PlacedToken placed;
    placed.start = std::min(formula.find_first_not_of(" \r\n", cursor), formula.size());
    const Kind kind = lexer.next_token(formula, cursor, placed.token, SeparatorSet::kGeneric);
    if (kind == Kind::kError) return {};
    if (kind == Kind::kEnd) break;
    placed.end = cursor;
    tokens.push_back(placed);
  }
  return tokens;
}

bool is_field(const Token& token) {
  return token.kind == Kind::kReference && token.reference.source != nullptr;
}

// A name that is a single word, so that nothing else can be read from it.
bool is_word(std::string_view name) {
  size_t position = 0;
  if (name.empty() || !platform::is_letter(next_character(name, position))) return false;
  while (position < name.size()) {
    if (!is_name_character(next_character(name, position))) return false;
  }
  return compare_folded(name, "true") != 0 && compare_folded(name, "false") != 0;
}

// NAME between quotes that it does not hold; empty when it holds both kinds.
std::string quoted_name(std::string_view name) {
  for (const char quote : {'"', '\''}) {
    if (name.find(quote) == std::string_view::npos) return quote + std::string(name) + quote;
  }
  return {};
}

// How the field FIELD is named in the formulas of its own table where REST follows.
std::string spelled_field(const FieldNames& names, size_t field, std::string_view name,
                          std::string_view rest) {
  const auto match = names.match(std::string(name) + std::string(rest));
  if (match && match->field == field && match->bytes == name.size()) return std::string(name);
  const std::string quoted = quoted_name(name);
  return quoted.empty() ? quoted : "$" + quoted;
}

}  // namespace

NameKeeper::NameKeeper(const Database& database, const FormulaSettings& settings) : settings_(settings) {
  for (CWorkSheet* table : database.tables()) {
    for (size_t field = 0; field < table->field_count(); ++field) {
      const Field& definition = table->field(field);
      for (const bool is_validation : {false, true}) {
        const std::string& text = is_validation ? definition.validation : definition.formula;
        auto uses = find_uses(*table, text);
        if (!uses.empty()) formulas_.push_back({table, field, is_validation, std::move(uses)});
      }
    }
  }
}

std::vector<NameKeeper::Use> NameKeeper::find_uses(const CWorkSheet& table,
                                                   const std::string& formula) const {
  std::vector<Use> uses;
  if (formula.empty()) return uses;
  const auto lexer = std::make_unique<FormulaLexer>(settings_);
  lexer->set_table(&table);
  const std::vector<PlacedToken> tokens = tokens_of(formula, *lexer);
  const auto add = [&](const PlacedToken& placed, const CWorkSheet& of, std::optional<size_t> field,
                       bool qualified) {
    const bool quoted = placed.token.literal || formula[placed.start] == '$';
    uses.push_back({placed.start, placed.end - placed.start, &of, field,
                    field ? of.field(*field).name : of.path(), qualified, quoted});
  };
  for (size_t i = 0; i < tokens.size(); ++i) {
    const bool before_qualifier = i + 2 < tokens.size() && tokens[i + 1].token.kind == Kind::kQualifier;
    const Token& token = tokens[i].token;
    if (!before_qualifier) {
      if (is_field(token)) add(tokens[i], table, token.reference.first_column, false);
      continue;
    }
    const Token& name = tokens[i + 2].token;
    const CWorkSheet* named = token.kind == Kind::kText ? find_named_table(&table, token.text) : nullptr;
    const std::string_view field_name =
        is_field(name) ? std::string_view(table.field(name.reference.first_column).name) : name.text;
    const auto field = named != nullptr ? named->find_field(field_name) : std::nullopt;
    if (named != nullptr) add(tokens[i], *named, std::nullopt, true);
    if (field) add(tokens[i + 2], *named, field, true);
    i += 2;
  }
  return uses;
}

// From the last name to the first, so that the places of those before stay.
std::string NameKeeper::updated(const Formula& formula, std::string text) const {
  const FieldNames names(*formula.table);
  std::string original = text;
  for (auto use = formula.uses.rbegin(); use != formula.uses.rend(); ++use) {
    const std::string now = use->field ? use->table->field(*use->field).name : use->table->path();
    if (now == use->name) continue;
    std::string spelled;
    if (use->qualified) {
      const bool is_bare = !use->quoted && is_word(now) && (use->field || !names.find(now));
      spelled = is_bare ? now : quoted_name(now);
    } else {
      spelled =
          spelled_field(names, *use->field, now, std::string_view(text).substr(use->start + use->bytes));
    }
    if (spelled.empty()) return original;
    text.replace(use->start, use->bytes, spelled);
  }
  return text.size() <= kMaxBufferBytes ? text : original;
}

void NameKeeper::update_formulas() {
  for (const Formula& formula : formulas_) {
    Field definition = formula.table->field(formula.field);
    std::string& text = formula.is_validation ? definition.validation : definition.formula;
    std::string now = updated(formula, text);
    if (now == text) continue;
    text = std::move(now);
    formula.table->rewrite_formulas(formula.field, definition.formula, definition.validation);
  }
}

}  // namespace rowvane
